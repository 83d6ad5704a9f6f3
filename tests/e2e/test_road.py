#!/usr/bin/python3
"""The whole road of a player in a real window: choose, log in, speak, walk, look, enter a dream, lose the server, close.

Usage: test_road.py BINARIES [NAME...]; checked by what the server received, by the logs and by regions of the picture."""

import filecmp
import os
import re
import sys
import time
import traceback

sys.dont_write_bytecode = True
from desktop import Client, Demo, Display, Missed, read_text, wait_until  # noqa: E402

CHOOSER_LIST = (300, 245, 300, 120)
MARKER_FIRST = (255, 236, 50, 32)
MARKER_SECOND = (255, 270, 50, 34)
WORLD = (150, 60, 500, 200)
CHAT = (45, 310, 640, 235)
INPUT_LINE = (50, 555, 640, 18)


def check(holds, what):
    if not holds:
        raise Missed(what)
    print('  ok:', what, flush=True)


def choose_and_log_in(demo, client, display):
    chooser = display.picture()
    check(chooser.lit(*CHOOSER_LIST) > 0.01, 'the player files are listed')
    check(chooser.lit(*MARKER_FIRST) > 0.02 and chooser.lit(*MARKER_SECOND) == 0, 'the marker stands at the first')
    client.press('Down')
    moved = display.picture()
    check(moved.lit(*MARKER_SECOND) > 0.02 and moved.lit(*MARKER_FIRST) == 0, 'Down moves the marker')
    client.press('Up')
    client.press('Return')
    player = demo.server_saw(r'accepted the login of "([^"]+)"').group(1)
    wait_until('the world is drawn', 30, lambda: display.picture().colours(*WORLD) > 50)
    return player


def talk(demo, client, display, player):
    quiet = display.picture()
    client.type('Hello you there')
    wait_until('the typed line is shown', 10, lambda: display.picture().difference(quiet, *INPUT_LINE) > 0.5)
    client.press('Return')
    demo.server_saw(rf'"{player}" sends: "Hello you there')
    client.press('Return')  # an empty line sends nothing
    client.type(':waves')
    client.press('Return')
    demo.server_saw(rf'"{player}" sends: :waves')
    check(not re.search(rf'"{player}" sends: "\n', demo.text('server.log')), 'an empty line is not sent')
    check(display.picture().difference(quiet, *CHAT) > 0.2, 'the talk is on the screen')


def turn_the_camera(demo, client, display):
    before_log = demo.text('server.log')
    before = display.picture()
    client.press('KP_Left', 0.8)
    turned = display.picture()
    check(turned.difference(before, *WORLD) > 3, 'keypad 4 turns the camera')
    client.press('KP_Begin')
    wait_until('keypad 5 puts the camera back', 20,
               lambda: display.picture().difference(before, *WORLD) < turned.difference(before, *WORLD) / 2)
    check('sends: m ' not in demo.text('server.log')[len(before_log):], 'the keypad does not walk')


def walk_and_look(demo, client, display, player):
    before = display.picture()
    for key, line in (('Up', 'm 9'), ('Next', 'm 3'), ('End', 'm 1'), ('Left', 'm 7'), ('Insert', '<'), ('Delete', '>')):
        since = len(demo.text('server.log'))
        client.press(key, 0.05)
        demo.server_saw(rf'"{player}" sends: {re.escape(line)}\n', since=since)
        if key == 'Up':
            wait_until('the view follows the first step', 10, lambda: display.picture().difference(before, *WORLD) > 3)
    time.sleep(3)  # the camera settles on the player's cell
    client.click(400, 300)
    demo.server_saw(rf'"{player}" sends: l ')
    demo.client_saw(r'\(That is you\.')


def enter_the_dream(demo, client, display, player):
    town = display.picture()
    client.walk(demo.road('tidegarden'))
    demo.server_saw(rf'"{player}" takes the door to tidegarden', 30)
    demo.server_saw(rf'"{player}" sends: vascodagama', 60)
    archive = f'{demo.folder}/kvn2_tmp/tidegarden/tidegarden.dream'
    kept = [os.path.join(top, name) for top, _, names in os.walk(demo.folder) for name in names
            if name == 'tidegarden.dream' and 'kvn2_tmp' not in top]
    check(kept and filecmp.cmp(kept[0], archive, shallow=False), 'the archive came over whole')
    wait_until('the dream is drawn with its own floors', 20,
               lambda: display.picture().difference(town, *WORLD) > 8 and display.picture().colours(*WORLD) > 50)


def lose_the_server(demo, client, display):
    before = display.picture()
    demo.stop_server()
    wait_until('the loss is told in the chat', 20, lambda: display.picture().difference(before, *CHAT) > 0.2)
    check(client.process.poll() is None, 'the client lives on')


def logs_are_clean(demo):
    for name in ('_error.txt', '_stat.txt', '_netlog.txt', '_shaders.txt', '_meshStats.txt', '_profile.txt'):
        check(os.path.exists(f'{demo.folder}/{name}'), f'{name} is there')
    errors = demo.text('_error.txt')
    check(errors == '', f'the error log is empty {errors[:500]!r}')
    statistics = demo.text('_stat.txt')
    for line in ('OS Version: ', 'Video card: ', 'average FPS for invididual scenes:', '  -CMain (over ',
                 'Average framerate (over ', 'Font textures generated: ', 'Network connection:\n  -Total data sent: '):
        check(line in statistics, f'the statistics say {line.strip()!r}')
    traffic = demo.text('_netlog.txt')
    check('{SENT TO SERVER}connect (NAME/PASS REMOVED FOR SECURITY)' in traffic, 'the login is masked')
    check('Generate textures from tolv graphics' in demo.text('_profile.txt'), 'the profile has the conversion')


def the_road(demo, display):
    with Client(demo, display) as client:
        player = choose_and_log_in(demo, client, display)
        talk(demo, client, display, player)
        turn_the_camera(demo, client, display)
        walk_and_look(demo, client, display, player)
        enter_the_dream(demo, client, display, player)
        lose_the_server(demo, client, display)
        client.press_close_button()
        check(client.ended() == 0, 'the close button ends the program with code 0')
    logs_are_clean(demo)


def a_dream_that_is_gone(demo, display):
    with Client(demo, display) as client:
        client.press('Return')
        player = demo.server_saw(r'accepted the login of "([^"]+)"').group(1)
        wait_until('the world is drawn', 30, lambda: display.picture().colours(*WORLD) > 50)
        client.walk(demo.road('fadeddream'))
        client.box('Erp')
        time.sleep(0.5)
        display.xdotool('key', 'Return')
        demo.server_saw(rf'"{player}" sends: goback')
        check('Anomolous response recieved to RC request.' in demo.text('_error.txt'), 'the refusal is in the error log')
        time.sleep(1)
        client.walk(demo.road('fadeddream'))
        client.box('Erp')
        client.press_close_button()
        check(client.ended() == 0, 'closing the window answers the question and ends the program')
        demo.server_saw(rf'"{player}" sends: vascodagama')


def two_players(demo, display):
    other_display = Display()
    try:
        with Client(demo, display) as ada, Client(demo, other_display, demo.copy_for_another_player()) as bram:
            ada.press('Return')
            demo.server_saw('accepted the login of "Ada"')
            bram.press('Down')
            bram.press('Return')
            demo.server_saw('accepted the login of "Bram"')
            bram.type('Good morning')
            bram.press('Return')
            wait_until('Ada hears Bram', 20, lambda: '(Bram: Good morning\n' in ada.text('_netlog.txt'))
            ada.type('/Bram psst')
            ada.press('Return')
            wait_until('Bram hears Ada whisper', 20, lambda: 'Ada whispers, "psst"' in bram.text('_netlog.txt'))
            bram.press_close_button()
            check(bram.ended() == 0, 'Bram leaves')
            demo.server_saw('"Bram" has gone')
    finally:
        other_display.close()


def no_server_at_all(demo, display):
    demo.stop_server()
    with Client(demo, display) as client:
        client.press('Return')
        wait_until('the failure is told in the chat', 20, lambda: display.picture().lit(*CHAT) > 0.005)
        client.type('nobody hears')
        client.press('Return')
        client.process.terminate()
        check(client.ended() == 0, 'a termination request ends the program')
    errors = demo.text('_error.txt')
    check('  -connection refused by server\n' in errors and 'memory leaks' not in errors, 'the refusal is in the error log')


def resting_picture(display):
    """The picture once nothing moves in it."""
    pictures = [display.picture()]

    def rests():
        time.sleep(0.5)
        pictures.append(display.picture())
        return pictures[-1].difference(pictures[-2], *WORLD) < 0.1

    wait_until('the picture rests', 30, rests)
    return pictures[-1]


def things_on_the_map(demo, display):
    list_name = f'{demo.folder}/data/items/items.txt'
    items = read_text(list_name)
    models = {'placeholder'} | {line.split()[1][:-len('.mbm')] for line in items.splitlines()[1:] if line}

    def reload(new_list, what, seen):
        with open(list_name, 'w', encoding='latin-1') as file:
            file.write(new_list)
        client.press('F10')
        wait_until(what, 20, lambda: seen(display.picture()))

    def log_in_and_look():
        since = len(demo.text('server.log'))
        client.press('Return')
        demo.server_saw('accepted the login', since=since)
        wait_until('the world is drawn', 30, lambda: display.picture().colours(*WORLD) > 50)
        return resting_picture(display)

    def close():
        client.press_close_button()
        check(client.ended() == 0 and demo.text('_error.txt') == '', 'the client ends without an error')

    with Client(demo, display) as client:
        furnished = log_in_and_look()
        for _ in range(2):
            reload('0\n', 'nothing stands on the map', lambda picture: picture.difference(furnished, *WORLD) > 3)
            reload(items, 'all of it is back', lambda picture: picture.difference(furnished, *WORLD) < 0.2)
        close()
    made = [os.path.join(top, name) for top, _, names in os.walk(f'{demo.folder}/gen') for name in names]
    check(sorted(made) == sorted(f'{demo.folder}/gen/data/items/{name}.bmbm' for name in models),
          f'{len(made)} models have a cache, and nothing else is there')

    def samples(region):
        match = re.search(rf'{re.escape(region)} - .*?Samples taken: (\d+)', demo.text('_profile.txt'), re.DOTALL)
        return int(match.group(1)) if match else 0

    # The three lists with models are read; the placeholder stands in the two without as well.
    check(samples('Build Position Mesh') >= len(models), 'the texts were read')
    check(samples('Load BMBM file (binary)') == 2 * len(models) + 2, 'F10 reads the caches')
    check(demo.text('_meshStats.txt').count('-GRAPHIC, optimized verts: ') == len(models), 'each text was counted once')

    with Client(demo, display) as client:
        check(log_in_and_look().difference(furnished, *WORLD) < 0.2, 'the caches give the same picture')
        close()
    check(samples('Build Position Mesh') == 0 and samples('Load BMBM file (binary)') == len(models),
          'the second start reads the caches alone')


TESTS = {test.__name__: test
         for test in (the_road, things_on_the_map, two_players, a_dream_that_is_gone, no_server_at_all)}


def main():
    binaries, names = sys.argv[1], sys.argv[2:] or list(TESTS)
    failed = 0
    for name in names:
        print(name, flush=True)
        display = Display()
        demo = Demo(binaries)
        try:
            TESTS[name](demo, display)
            demo.stop_server()
            check(demo.findings() == '', 'no sanitizer has found anything')
        except Exception:  # noqa: BLE001 - whatever went wrong, the others still run
            traceback.print_exc()
            failed += 1
            for log in ('server.log', '_error.txt', '_netlog.txt'):
                print(f'--- the end of {log}:\n{demo.text(log)[-1500:]}')
            print(demo.findings()[:20000])
        finally:
            demo.close()
            display.close()
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
