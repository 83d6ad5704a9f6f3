#!/usr/bin/python3
"""The client in a real window against a server that misbehaves in each of its ways: it lives, it answers, it stays small.

Usage: test_storms.py BINARIES [MODE...] or test_storms.py BINARIES I/N, the Ith of N parts of all modes. Of the environment
KELVANE_STORM_SECONDS (3) is how long each storm lasts, KELVANE_STORM_TOGETHER (2) how many clients run at the same time,
each with a display and a server of its own, and KELVANE_STORM_KEEP a folder that gets the beginning of each error log.

What is asked of the client:
- A frame every 250 ms, but for those that enter the game, load a dream or ask something. The time in which the frames'
  thread was ready to run and the kernel gave the processors to others does not count, nor that in which it waited for the
  X server: on a busy machine these are a second and more. The rasteriser runs in that thread as well.
- No more than 160 MiB of memory above the client of the good server that is run first.
- An error log of at most 8 MiB, with no misuse, no failed call and no leak in it: those are reported with call stacks.
- A typed letter is on the screen at last (40 seconds: a busy machine draws one frame in several of them), and the close button ends it with code 0 within 20."""

import concurrent.futures
import os
import re
import subprocess
import sys
import time
import traceback

sys.dont_write_bytecode = True
from desktop import Client, Demo, Display, Missed, wait_until  # noqa: E402

INPUT_LINE = (50, 555, 640, 18)
GAP_MS = 250
MORE_MEMORY_KIB = 160 * 1024
ERROR_LOG_BYTES = 8 << 20
STILL_TYPING_SECONDS = 40


class Figures:
    """What one storm did to the client."""

    def __init__(self):
        self.gap = self.excused = self.wall = 0.0
        self.gap_at = 0.0
        self.memory = self.errors = self.traffic = self.frames = 0
        self.faults = []

    def row(self, name):
        return (f'{name:20} gap {self.gap:5.0f} ms at {self.gap_at:5.1f} s (by the clock {self.wall:5.0f}), excused {self.excused:6.0f} ms, '
                f'{self.memory / 1024:6.1f} MiB, errors {self.errors:8}, traffic {self.traffic / 2**20:7.1f} MiB, '
                f'{self.frames:6} frames {"; ".join(self.faults)}')


def peak_memory(process):
    """The largest resident memory of a process so far, in KiB."""
    with open(f'/proc/{process.pid}/status', encoding='ascii') as status:
        return int(re.search(r'VmHWM:\s+(\d+)', status.read()).group(1))


def answer_box(client):
    """Refuses to go back, if the client asks."""
    if client.display.xdotool('search', '--name', '^Erp$'):
        client.display.xdotool('key', 'Escape')
        return True
    return False


def read_gaps(path, since, figures):
    """Fills in the frame gaps since a moment of the monotonic clock."""
    with open(path, encoding='ascii') as file:
        head, *gaps = file.read().splitlines()
    figures.frames = int(head.split()[1])
    for gap in gaps:
        moment, length, waited, excused = map(float, gap.split())
        own = length - waited
        if moment < since:
            continue
        if excused:
            figures.excused = max(figures.excused, own)
            continue
        figures.wall = max(figures.wall, length)
        if own > figures.gap:
            figures.gap, figures.gap_at = own, moment - since


def sees_letter(client):
    """Whether a typed letter appears; boxes that come up are answered."""
    answer_box(client)
    before = client.display.picture()
    client.type('W')
    end = time.monotonic() + 8
    while time.monotonic() < end:
        answer_box(client)
        if client.display.picture().difference(before, *INPUT_LINE) > 0.02:
            return True
    return False


def weather(binaries, mode, seconds):
    """One client at a server with this mode, None for a good one."""
    figures = Figures()
    display = Display()
    demo = Demo(binaries, *(['--misbehave', mode] if mode else []))
    gaps = f'{demo.folder}/gaps.txt'
    try:
        environment = {'LD_PRELOAD': f'{binaries}/frame_gaps.so', 'FRAME_GAPS_FILE': gaps, 'LP_NUM_THREADS': '0'}
        with Client(demo, display, environment=environment) as client:
            begin = time.monotonic()
            client.press('Return')
            demo.client_saw('Connected to host')
            while time.monotonic() < begin + seconds and client.process.poll() is None:
                answer_box(client)
                time.sleep(0.25)
            if client.process.poll() is not None:
                raise Missed(f'the client ended with {client.process.poll()}')
            wait_until('a typed letter is seen', STILL_TYPING_SECONDS, lambda: sees_letter(client))
            read_gaps(gaps, begin, figures)
            figures.memory = peak_memory(client.process)
            client.press_close_button()
            code = client.ended()
            if code != 0:
                raise Missed(f'the close button ends the client with {code}')
    except Exception as failure:  # noqa: BLE001 - the other storms still run
        figures.faults.append(f'{failure or traceback.format_exc()}')
    finally:
        errors = demo.text('_error.txt')
        figures.errors = len(errors)
        if '  -call' in errors or '  -attempt' in errors:
            figures.faults.append('a call stack is in the error log')
        figures.traffic = os.path.getsize(f'{demo.folder}/_netlog.txt')
        keep = os.environ.get('KELVANE_STORM_KEEP')
        if keep:
            with open(f'{keep}/{mode}.errors', 'w', encoding='latin-1') as file:
                file.write(errors[:1 << 20])
        demo.close()
        display.close()
    return figures


def main():
    binaries, names = sys.argv[1], sys.argv[2:]
    seconds = float(os.environ.get('KELVANE_STORM_SECONDS', '3'))
    part = re.fullmatch(r'(\d+)/(\d+)', names[0]) if names else None
    if part or not names:
        usage = subprocess.run([f'{binaries}/kelvane-demo-server', '--help'], check=True, capture_output=True, text=True)
        names = re.findall(r'^  (\S+)', usage.stdout.split('modes:')[1], re.MULTILINE)
    if part:
        names = names[int(part.group(1)) - 1::int(part.group(2))]
    together = int(os.environ.get('KELVANE_STORM_TOGETHER', '2'))
    with concurrent.futures.ThreadPoolExecutor(together) as pool:
        good = pool.submit(weather, binaries, None, seconds)
        storms = [(name, pool.submit(weather, binaries, name, seconds)) for name in names]
        measure = good.result()
        print(measure.row('(good server)'), flush=True)
        bad = len(measure.faults)
        for name, storm in storms:
            figures = storm.result()
            if figures.gap > GAP_MS:
                figures.faults.append(f'FRAME GAP over {GAP_MS} ms')
            if figures.memory > measure.memory + MORE_MEMORY_KIB:
                figures.faults.append('MEMORY')
            if figures.errors > ERROR_LOG_BYTES:
                figures.faults.append('ERROR LOG')
            print(figures.row(name), flush=True)
            bad += bool(figures.faults)
    return 1 if bad else 0


if __name__ == '__main__':
    sys.exit(main())
