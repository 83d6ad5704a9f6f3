#!/usr/bin/python3
"""The client in a world that fails: full disks, folders that are closed, wrong or gone, no handles, names that are never
found, a display that dies, requests to end at bad moments, a crash.

Usage: test_failing_world.py BINARIES [NAME...]"""

import os
import re
import resource
import shutil
import signal
import socket
import subprocess
import sys
import threading
import time
import traceback

sys.dont_write_bytecode = True
from desktop import Client, Demo, Display, Missed, read_text, wait_until  # noqa: E402

DOWNLOAD = 'kvn2_tmp/tidegarden'
WORLD = (150, 60, 500, 200)


def check(holds, what):
    if not holds:
        raise Missed(what)
    print('  ok:', what, flush=True)


class Game:
    """A game server that logs everybody in and sends the player wherever the test wants."""

    def __init__(self, folder):
        self.heard, self.player = '', None
        self.listener = socket.create_server(('127.0.0.1', 0))
        self.write_address(folder, '127.0.0.1')
        threading.Thread(target=self.serve, daemon=True).start()

    def write_address(self, folder, host):
        with open(f'{folder}/data/tolv_ip.txt', 'w', encoding='ascii') as file:
            file.write(f'{host}\n{self.listener.getsockname()[1]}\n')

    def serve(self):
        try:
            while True:
                self.player = self.listener.accept()[0]
                self.send('Welcome.\nEND')
                while received := self.player.recv(4096).decode('latin-1'):
                    if 'connect ' in received:
                        self.send('&' * 13)
                    if 'desc ' in received:
                        self.send(']ccday.pcx\n;maps\\default.map\n@ A Y')
                    self.heard += received
        except OSError:
            pass  # the test or the client has ended

    def send(self, line):
        self.player.sendall(line.encode('latin-1') + b'\n')

    def hears(self, line, limit=20):
        wait_until(f'the game hears {line!r}', limit, lambda: line in self.heard)
        self.heard = ''

    def close(self):
        self.listener.close()
        if self.player:
            self.player.close()


class World:
    """All there is: a display, an installation with its file server, a game server; the client when it is started."""

    def __init__(self, binaries):
        self.display, self.demo = Display(), Demo(binaries)
        self.folder = self.demo.folder
        self.game = Game(self.folder)
        self.mounted = []

    def start(self, *through, logs=True):
        if os.path.isfile(self.path('_stat.txt')):
            os.remove(self.path('_stat.txt'))  # the one before is no sign that this client is up
        return Client(self.demo, self.display, through=through, logs=logs)

    def in_town(self, *through, logs=True):
        client = self.start(*through, logs=logs)
        client.press('Return')
        self.game.hears('desc ')
        if os.path.isfile(f'{self.folder}/maps/default.map'):
            wait_until('the town is drawn', 20, lambda: self.display.picture().colours(*WORLD) > 50)
        return client

    def path(self, name):
        return f'{self.folder}/{name}'

    def errors(self):
        return read_text(self.path('_error.txt'))

    def enter_dream(self, name='tidegarden'):
        self.game.send(f']q {name} 0 0')

    def dream_fails(self, client, answer='Return'):
        """The question whether to go back, answered with Yes."""
        self.enter_dream()
        client.box('Erp')
        time.sleep(0.3)
        if answer:
            self.display.xdotool('key', answer)
            self.game.hears('goback')

    def dream_loads(self):
        self.enter_dream()
        self.game.hears('vascodagama')

    def ends_in_order(self, client, code=0, logs=True):
        check(client.ended() == code, f'the program ends with code {code}')
        if not logs:
            return
        statistics, errors = client.text('_stat.txt'), self.errors()
        check('average FPS for invididual scenes:' in statistics and 'Average framerate (over ' in statistics,
              'with its statistics')
        check('crashed' not in errors and 'memory leaks' not in errors, 'without a crash or a leak')

    def fill_with_tmpfs(self, name, size):
        """A small disk under a folder; false, with a line that says so, where nobody may mount one."""
        os.makedirs(self.path(name), exist_ok=True)
        command = ['mount', '-t', 'tmpfs', '-o', f'size={size}', 'tmpfs', self.path(name)]
        done = subprocess.run(command, check=False, capture_output=True, text=True)
        if done.returncode:
            print(f'  SKIPPED: no small disk can be mounted here: {done.stderr.strip()}', flush=True)
            return False
        self.mounted.append(self.path(name))
        return True

    def close(self):
        self.game.close()
        self.display.close()
        for folder in self.mounted:
            subprocess.run(['umount', folder], check=False)
        self.demo.close()


def limit_of(client, what, soft):
    resource.prlimit(client.process.pid, what, (soft, resource.prlimit(client.process.pid, what)[1]))


def a_crash(world):
    with world.in_town() as client:
        client.process.send_signal(signal.SIGSEGV)
        check(client.ended() == -signal.SIGSEGV, 'the program ends by the signal')
    report = world.errors()
    check(f'Error: The program has crashed: invalid memory access (SIGSEGV), sent by process {os.getpid()}.' in report,
          'the error log tells of the crash')
    check(re.search(r'  -call stack:\n(.*\n)*   kelvane: main - \S*program/main\.cpp - Line \d+\n', report),
          'with functions and lines')


def requests_to_end(world):
    with world.start() as client:
        client.process.send_signal(signal.SIGINT)
        world.ends_in_order(client)
    with world.in_town() as client:
        world.enter_dream('starlibrary')
        wait_until('the dream comes', 20, lambda: 'starlibrary is delivered' in world.demo.text('server.log'))
        client.process.send_signal(signal.SIGHUP)
        world.ends_in_order(client)
    os.remove(world.path('dreams/tidegarden.dream'))
    with world.in_town() as client:
        world.dream_fails(client, answer=None)
        client.process.send_signal(signal.SIGTERM)
        world.ends_in_order(client)


def names_that_are_never_found(world):
    slow = ['env', f'LD_PRELOAD={world.demo.binaries}/slow_names.so']
    world.game.write_address(world.folder, 'game.slow')
    with world.start(*slow) as client:
        client.press('Return')
        time.sleep(0.5)
        client.press_close_button()
        world.ends_in_order(client)
    check('Unable to resolve host "game.slow"' in world.errors(), 'a lookup is given up when the window closes')
    world.game.write_address(world.folder, '127.0.0.1')
    with open(world.path('data/tolvfile_ip.txt'), 'w', encoding='ascii') as file:
        file.write('files.slow\n1\n')
    with world.in_town(*slow) as client:
        world.enter_dream()
        time.sleep(0.5)
        client.process.terminate()
        world.ends_in_order(client)
    check('Unable to resolve host "files.slow"' in world.errors(), "the file server's as well")


def the_display_goes_away(world):
    os.remove(world.path('dreams/tidegarden.dream'))
    with world.in_town() as client:
        world.dream_fails(client, answer=None)
        world.display.process.kill()
        world.ends_in_order(client, 2)
        check(world.errors().endswith('The display has gone away.  Program shut down.\n'), 'the error log says why')
    world.display.close()
    world.display = Display()
    with world.in_town() as client:
        world.display.process.kill()
        world.ends_in_order(client, 2)
        check(world.errors() == 'The display has gone away.  Program shut down.\n', 'and nothing else')


def unfinished_files(world, folder):
    return [name for top, _, names in os.walk(world.path(folder)) for name in names if name.endswith('.tmp')]


def files_that_cannot_grow(world):
    """A limit on the size of files, which every machine can set, stands for the full disk."""
    with world.in_town('prlimit', '--fsize=8000:unlimited') as client:
        check("fwrite didn't complete in SaveMeshBMBM???" in world.errors(), 'caches that do not fit are told of')
        check(not unfinished_files(world, 'gen') and not os.path.exists(world.path('gen/data/items/fountain.bmbm')),
              'and leave no half file')
        world.dream_fails(client)
        check('Failed to write downloaded data to the output file.' in world.errors(), 'so is a download')
        wait_until('the half file goes', 5, lambda: not os.path.exists(world.path(f'{DOWNLOAD}/tidegarden.dream')))
        limit_of(client, resource.RLIMIT_FSIZE, 30000)
        world.dream_loads()
        check('Unable to write file: kvn2_tmp\\tidegarden\\floors.ts2, so skipping' in world.errors(),
              'a file of the archive that does not fit is skipped')
        check(os.listdir(world.path(DOWNLOAD)).count('floors.ts2') == 0 and not unfinished_files(world, DOWNLOAD),
              'and leaves no half file')
        limit_of(client, resource.RLIMIT_FSIZE, resource.RLIM_INFINITY)
        world.dream_loads()
        check(os.path.getsize(world.path(f'{DOWNLOAD}/floors.ts2')) == 37666, 'it comes with the next visit')
        limit_of(client, resource.RLIMIT_FSIZE, 0)
        world.dream_loads()
        client.process.terminate()
        world.ends_in_order(client, logs=False)


def a_full_disk(world):
    if not world.fill_with_tmpfs('small', '12m'):
        return
    installation = world.path('small/game')
    shutil.copytree(world.folder, installation, ignore=shutil.ignore_patterns('small', '_*.txt', '*.log'))
    world.folder = world.demo.folder = installation
    filler = world.path('filler')
    with open(filler, 'wb', buffering=0) as file:
        try:
            while file.write(bytes(4096)):
                pass
        except OSError:
            pass  # the disk is full
    with world.in_town(logs=False) as client:
        check(world.errors() == '' and os.path.exists(world.path('_error.txt')), 'there is no room for the logs')
        check(not unfinished_files(world, 'gen'), 'no cache is left unfinished')
        world.dream_fails(client)
        wait_until('the half download goes', 5, lambda: not os.path.exists(world.path(f'{DOWNLOAD}/tidegarden.dream')))
        os.remove(filler)
        world.dream_loads()
        client.process.terminate()
        check(client.ended() == 0, 'the program ends in order')
        check('Average framerate (over ' in read_text(world.path('_stat.txt')), 'with its statistics')


def a_closed_folder(world):
    """Read-only for the client's user: permissions do not bind root."""
    through = []
    if os.geteuid() == 0:
        through = ['setpriv', '--reuid=65534', '--regid=65534', '--clear-groups']
        os.chmod(world.folder, 0o755)
    for top, _, _ in os.walk(world.folder):
        os.chmod(top, 0o555)
    try:
        with world.in_town(*through, logs=False) as client:
            world.dream_fails(client)
            client.type('still here')
            client.press('Return')
            world.game.hears('"still here')
            client.process.terminate()
            world.ends_in_order(client, logs=False)
        check(not {'gen', 'kvn2_tmp', '_error.txt'} & set(os.listdir(world.folder)), 'nothing was written')
    finally:
        for top, _, _ in os.walk(world.folder):
            os.chmod(top, 0o755)


def things_in_the_way(world):
    """Folders in the place of files and files in the place of folders."""
    def a_folder(name):
        path = world.path(name)
        if os.path.exists(path):
            os.remove(path)
        os.makedirs(path)

    def a_file(name):
        if os.path.isdir(world.path(name)):
            shutil.rmtree(world.path(name))
        with open(world.path(name), 'w', encoding='ascii') as file:
            file.write('in the way')

    for name in ('_error.txt', '_profile.txt', 'Aaa.ini', 'maps/default.map', 'data/pickINI.bmp', 'data/colors/eye.txt'):
        a_folder(name)
    for name in os.listdir(world.path('patches/default')):
        a_folder(f'patches/default/{name}')
    for name in ('kvn2_tmp', 'gen', 'data/items', 'data/ui'):
        a_file(name)
    with world.in_town() as client:
        world.dream_fails(client)
        client.press('F10')
        client.press_close_button()
        check(client.ended() == 0, 'the program lives with all of them to its end')
    os.rmdir(world.path('_error.txt'))
    os.remove(world.path('kvn2_tmp'))
    a_folder(f'{DOWNLOAD}/tidegarden.dream')
    a_folder(f'{DOWNLOAD}/tidegarden.dream.size')
    with world.in_town() as client:
        world.dream_fails(client)
        check('Failed to open output file, to download dream into.' in world.errors(), 'a download takes no folder')
        os.rmdir(world.path(f'{DOWNLOAD}/tidegarden.dream'))
        a_folder(f'{DOWNLOAD}/default.map')
        world.dream_fails(client)
        check('so skipping' in world.errors(), 'nor can a file of the archive')
        client.press_close_button()
        world.ends_in_order(client)


def folders_that_vanish(world):
    with world.in_town() as client:
        world.dream_loads()
        shutil.rmtree(world.path('kvn2_tmp'))
        world.dream_loads()
        check(os.path.exists(world.path(f'{DOWNLOAD}/default.map')), "the dream's folder comes back")
        shutil.rmtree(world.folder)
        client.press('F10')
        world.dream_fails(client)
        client.type('still here')
        client.press('Return')
        world.game.hears('"still here')
        client.press_close_button()
        world.ends_in_order(client, logs=False)
        check(not os.path.exists(world.folder), 'the working folder stays away')


def no_handles(world):
    for count in (6, 12, 20):  # without X, without OpenGL, without fonts
        process = subprocess.Popen(['prlimit', f'--nofile={count}', f'{world.demo.binaries}/kelvane'], cwd=world.folder,
                                   env=world.display.environment, stderr=subprocess.DEVNULL)
        time.sleep(1.5)
        process.terminate()  # a box may stand that says what is wrong
        code = process.wait(10)
        check(code in (0, 1), f'with {count} handles the program ends in order')
    with world.in_town() as client:
        limit_of(client, resource.RLIMIT_NOFILE, 3)
        world.dream_fails(client)
        limit_of(client, resource.RLIMIT_NOFILE, 1024)
        world.dream_loads()
        client.process.terminate()
        world.ends_in_order(client)


TESTS = {test.__name__: test for test in (
    a_crash, requests_to_end, names_that_are_never_found, the_display_goes_away, files_that_cannot_grow, a_full_disk,
    a_closed_folder, things_in_the_way, folders_that_vanish, no_handles)}


def main():
    binaries, names = sys.argv[1], sys.argv[2:] or list(TESTS)
    failed = 0
    for name in names:
        print(name, flush=True)
        begin, world = time.monotonic(), World(binaries)
        try:
            TESTS[name](world)
        except Exception:  # noqa: BLE001 - whatever went wrong, the others still run
            traceback.print_exc()
            failed += 1
            print(f'--- the end of _error.txt:\n{world.errors()[-3000:]}')
        finally:
            world.close()
        print(f'  {time.monotonic() - begin:.1f} s', flush=True)
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
