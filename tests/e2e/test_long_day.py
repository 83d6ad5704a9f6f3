#!/usr/bin/python3
"""A long day: a crowd that walks and talks, one dream after the other, and what the client takes of the machine meanwhile.

Usage: test_long_day.py BINARIES [--minutes N] [--crowd N] [--table FILE] [--sanitized]

The first third of the day is for warming up. Growth is what the last third has at its highest above the highest of the
second: no thread and no handle more, and no more memory than the allowance below. Memory is not
judged with --sanitized, because sanitizers keep what was freed."""

import argparse
import glob
import os
import re
import sys
import time
import traceback

sys.dont_write_bytecode = True
from desktop import Client, Demo, Display, wait_until  # noqa: E402
from test_road import WORLD, check  # noqa: E402

TOUR_SECONDS = 5
# What a heap of this size moves by: the thirds do not end at the same place of the tour.
MEMORY_ALLOWANCE = 2048
# The network log has everything received, so it grows with the traffic; the others are for what happens seldom.
QUIET_LOGS = {'_stat.txt': 20000, '_shaders.txt': 0, '_meshStats.txt': 200000, '_profile.txt': 20000}


def status(process):
    """Memory in KiB (all that is resident, and of it what belongs to no file), handles, threads, processor seconds."""
    with open(f'/proc/{process}/status', encoding='ascii') as file:
        fields = dict(line.split(':', 1) for line in file)
    with open(f'/proc/{process}/stat', encoding='ascii') as file:
        ticks = file.read().rsplit(')', 1)[1].split()[11:13]
    return {'resident': int(fields['VmRSS'].split()[0]), 'own memory': int(fields['RssAnon'].split()[0]),
            'handles': len(os.listdir(f'/proc/{process}/fd')), 'threads': int(fields['Threads']),
            'processor s': sum(map(int, ticks)) / os.sysconf('SC_CLK_TCK')}


def live(demo, client, display, minutes):
    """Lets the day pass and answers the samples."""
    samples = []
    start = time.monotonic()
    interval = min(10.0, minutes * 60 / 30)
    while time.monotonic() < start + minutes * 60:
        time.sleep(interval)
        sample = {'second': round(time.monotonic() - start), **status(client.process.pid),
                  'dreams': len(re.findall(r'" is now in (?!town)', demo.text('server.log'))),
                  'network log KiB': os.path.getsize(f'{demo.folder}/_netlog.txt') // 1024}
        samples.append(sample)
        if len(samples) % 6 == 0:
            # Without the noted size a dream is downloaded again; else the local copy is used.
            for name in glob.glob(f'{demo.folder}/kvn2_tmp/*/*.size'):
                os.remove(name)
        client.type(f'Here I am {len(samples)}')
        client.press('Return', 0.1)
        for key in ('Insert', 'Delete', 'Up'):
            display.xdotool('key', key)
    return samples


def thirds(samples, name):
    """The highest of the second third and of the last."""
    count = len(samples) // 3
    return (max(sample[name] for sample in samples[count:2 * count]), max(sample[name] for sample in samples[2 * count:]))


def check_growth(samples, sanitized):
    for name, allowance in (('handles', 0), ('threads', 0), ('own memory', float('inf') if sanitized else MEMORY_ALLOWANCE)):
        before, after = thirds(samples, name)
        check(after <= before + allowance, f'{name}: {before} at most in the second third, {after} in the last')


def table(samples):
    names = list(samples[0])
    lines = ['| ' + ' | '.join(names) + ' |', '|' + '---|' * len(names)]
    lines += ['| ' + ' | '.join(str(round(sample[name])) for name in names) + ' |' for sample in samples]
    return '\n'.join(lines) + '\n'


def check_logs(demo):
    for name, most in QUIET_LOGS.items():
        size = os.path.getsize(f'{demo.folder}/{name}')
        check(size <= most, f'{name} has {size} bytes, {most} at most {demo.text(name)[:300] if size > most else ""}')
    # The day may end in the middle of a download.
    errors = re.sub('^Note: deleting incompletely transfered file .*\n', '', demo.text('_error.txt'))
    check(errors == '', f'the error log is empty {errors[:500]!r}')
    traffic = demo.text('_netlog.txt')
    received = len(traffic)
    check('Stroller' in traffic and '{SENT TO SERVER}"Here I am 1\n' in traffic, f'the network log has all, {received} bytes')
    frames = re.search(r'-CMain \(over .*', demo.text('_stat.txt'))
    check(frames, f'the statistics have the frames: {frames and frames.group(0)}')


def the_day(demo, display, arguments):
    with Client(demo, display) as client:
        client.press('Return')
        demo.server_saw('accepted the login')
        wait_until('the world is drawn', 30, lambda: display.picture().colours(*WORLD) > 50)
        samples = live(demo, client, display, arguments.minutes)
        check(client.process.poll() is None, 'the client lives on')
        picture = display.picture()
        check(picture.colours(*WORLD) > 50, 'the world is still drawn')
        client.press_close_button()
        check(client.ended() == 0, 'the close button ends the program with code 0')
    text = table(samples)
    print(text)
    if arguments.table:
        with open(arguments.table, 'w', encoding='ascii') as file:
            file.write(text)
    dreams = len(re.findall(r'" is now in (?!town)', demo.text('server.log')))
    downloads = len(re.findall(' is delivered', demo.text('server.log')))
    check(dreams >= arguments.minutes * 60 / TOUR_SECONDS / 4, f'{dreams} dreams were entered')
    check(downloads > 0, f'{downloads} of them were downloaded')
    check_growth(samples, arguments.sanitized)
    check_logs(demo)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('binaries')
    parser.add_argument('--minutes', type=float, default=1)
    parser.add_argument('--crowd', type=int, default=200)
    parser.add_argument('--table')
    parser.add_argument('--sanitized', action='store_true')
    arguments = parser.parse_args()
    display = Display()
    demo = Demo(arguments.binaries, '--crowd', str(arguments.crowd), '--tour', str(TOUR_SECONDS), still=False)
    try:
        the_day(demo, display, arguments)
        demo.stop_server()
        check(demo.findings() == '', 'no sanitizer has found anything')
        return 0
    except Exception:  # noqa: BLE001 - told with the logs
        traceback.print_exc()
        for log in ('server.log', '_error.txt', '_netlog.txt'):
            print(f'--- the end of {log}:\n{demo.text(log)[-1500:]}')
        print(demo.findings()[:20000])
        return 1
    finally:
        demo.close()
        display.close()


if __name__ == '__main__':
    sys.exit(main())
