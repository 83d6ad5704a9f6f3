"""A display of its own, the demo's servers and the client in it, for the end-to-end tests."""

import ctypes
import glob
import os
import re
import shutil
import subprocess
import tempfile
import time

TITLE = '^Kelvane - '
# How many times longer than a release build the programs may take.
PATIENCE = float(os.environ.get('KELVANE_PATIENCE', '1'))


class Missed(Exception):
    """Something that should have been seen was not."""


def wait_until(what, limit, seen):
    """Calls `seen` till it answers something true; fails with `what` after `limit` seconds."""
    end = time.monotonic() + limit * PATIENCE
    while time.monotonic() < end:
        answer = seen()
        if answer:
            return answer
        time.sleep(0.05)
    raise Missed(f'not seen within {limit * PATIENCE} s: {what}')


def read_text(path):
    """The content of a file, empty while there is none."""
    try:
        with open(path, encoding='latin-1') as file:
            return file.read()
    except FileNotFoundError:
        return ''


def spoken(folder):
    """A file of the folder for what a program says on standard error, sanitizers above all."""
    return open(f'{folder}/stderr.txt', 'ab')


class Display:
    """An Xvfb of its own, picked by the server itself."""

    def __init__(self, width=800, height=600):
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(
            ['Xvfb', '-displayfd', str(write_end), '-screen', '0', f'{width}x{height}x24', '-nolisten', 'tcp'],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise Missed('Xvfb did not start')
        self.name = ':' + number
        self.environment = dict(os.environ, DISPLAY=self.name, SDL_VIDEODRIVER='x11')

    def xdotool(self, *arguments):
        return subprocess.run(['xdotool', *map(str, arguments)], env=self.environment, check=False,
                              capture_output=True, text=True).stdout.split()

    def picture(self):
        """The whole display as (width, height, RGB bytes)."""
        ppm = subprocess.run(['import', '-window', 'root', '-depth', '8', 'ppm:-'], env=self.environment, check=True,
                             capture_output=True).stdout
        head = re.match(rb'P6\s+(\d+)\s+(\d+)\s+255\s', ppm)
        return Picture(int(head.group(1)), int(head.group(2)), ppm[head.end():])

    def close(self):
        self.process.terminate()
        self.process.wait()


class Picture:
    def __init__(self, width, height, rgb):
        self.width, self.height, self.rgb = width, height, rgb

    def save(self, name):
        with open(name, 'wb') as file:
            file.write(b'P6 %d %d 255\n' % (self.width, self.height) + self.rgb)
        print(f'the last picture: {os.path.abspath(name)}')

    def region(self, x, y, width, height):
        """Pixels of a rectangle as (red, green, blue)."""
        pixels = []
        for row in range(y, y + height):
            line = self.rgb[3 * (row * self.width + x):3 * (row * self.width + x + width)]
            pixels += [tuple(line[i:i + 3]) for i in range(0, len(line), 3)]
        return pixels

    def lit(self, *rectangle):
        """The share of pixels of a rectangle that are not nearly black."""
        pixels = self.region(*rectangle)
        return sum(max(pixel) > 40 for pixel in pixels) / len(pixels)

    def colours(self, *rectangle):
        return len(set(self.region(*rectangle)))

    def difference(self, other, *rectangle):
        """The mean difference of a channel between two pictures in a rectangle, 0 to 255."""
        mine, theirs = self.region(*rectangle), other.region(*rectangle)
        return sum(abs(a - b) for p, q in zip(mine, theirs) for a, b in zip(p, q)) / (3 * len(mine))


class Demo:
    """The demo's installation in a temporary folder and its running servers."""

    def __init__(self, binaries, *server_arguments, still=True):
        self.binaries = os.path.abspath(binaries)
        self.folder = tempfile.mkdtemp(prefix='kelvane-e2e-')
        subprocess.run([f'{self.binaries}/kelvane-demo-world', self.folder], check=True, stdout=subprocess.DEVNULL)
        ports_file = f'{self.folder}/ports.txt'
        self.server = subprocess.Popen(
            [f'{self.binaries}/kelvane-demo-server', '--folder', self.folder, '--ports-file', ports_file, '--write-addresses',
             '--log', f'{self.folder}/server.log', '--log-lines', *(['--still'] if still else []),
             *server_arguments],
            stdout=subprocess.DEVNULL, stderr=spoken(self.folder))
        wait_until('the demo server listens', 20, lambda: os.path.exists(ports_file))

    def road(self, place):
        """The walk from the start to the door of a place, in the digits of the movement lines."""
        return subprocess.run([f'{self.binaries}/kelvane-demo-server', '--road', place], check=True, capture_output=True,
                              text=True).stdout.split()

    def text(self, name):
        return read_text(f'{self.folder}/{name}')

    def findings(self):
        """What the programs that ran here said on standard error, if a sanitizer is among the speakers."""
        said = '\n'.join(map(read_text, glob.glob(f'{self.folder}/**/stderr.txt', recursive=True)))
        return said if re.search('runtime error: |Sanitizer', said) else ''

    def copy_for_another_player(self):
        """A second installation with the same addresses, so that its client has logs of its own."""
        other = f'{self.folder}/another'
        shutil.copytree(self.folder, other, ignore=shutil.ignore_patterns('_*.txt', 'stderr.txt', 'kvn2_tmp', 'another'))
        return other

    def server_saw(self, pattern, limit=20, since=0):
        return wait_until(f'the server log has {pattern!r}', limit,
                          lambda: re.search(pattern, self.text('server.log')[since:]))

    def client_saw(self, pattern, limit=20):
        return wait_until(f'the network log has {pattern!r}', limit, lambda: re.search(pattern, self.text('_netlog.txt')))

    def stop_server(self):
        if self.server.poll() is not None:
            return
        self.server.terminate()
        self.server.wait(10 * PATIENCE)

    def close(self):
        self.stop_server()
        shutil.rmtree(self.folder, ignore_errors=True)


class Client:
    """The real program in its window, started by the command `through`; `logs` says whether it can write them."""

    def __init__(self, demo, display, folder=None, environment=None, through=(), logs=True):
        self.demo, self.display, self.folder = demo, display, folder or demo.folder
        self.process = subprocess.Popen([*through, f'{demo.binaries}/kelvane'], cwd=self.folder,
                                        env=dict(display.environment, **(environment or {})),
                                        stderr=spoken(demo.folder) if logs else None)
        if logs:
            wait_until('the graphics card is up', 60, lambda: 'Initial free texture memory' in self.text('_stat.txt'))
        self.window = wait_until('the window', 20,
                                 lambda: display.xdotool('search', '--onlyvisible', '--name', TITLE))[0]
        wait_until('the first picture', 30, lambda: display.picture().lit(100, 20, 600, 100) > 0.005)

    def text(self, name):
        return read_text(f'{self.folder}/{name}')

    def press(self, key, seconds=0.3):
        """Holds a key for long enough that a frame sees it."""
        self.display.xdotool('keydown', key)
        time.sleep(seconds)
        self.display.xdotool('keyup', key)
        time.sleep(0.2)

    def type(self, text):
        self.display.xdotool('type', '--delay', '30', text)

    def click(self, x, y):
        self.display.xdotool('mousemove', x, y)
        time.sleep(0.3)
        self.display.xdotool('click', '1')

    def walk(self, road):
        keys = {'9': 'Prior', '7': 'Home', '1': 'End', '3': 'Next'}
        for step in road:
            self.display.xdotool('key', keys[step])
            time.sleep(0.15)

    def box(self, caption, limit=30):
        """Waits for a message box with this caption."""
        return wait_until(f'the box {caption!r}', limit, lambda: self.display.xdotool('search', '--name', caption))[0]

    def press_close_button(self):
        """Asks the window to close as a window manager does."""
        x11 = ctypes.CDLL('libX11.so.6')
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XInternAtom.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.display.name.encode()))

        class ClientMessage(ctypes.Structure):
            _fields_ = [('type', ctypes.c_int), ('serial', ctypes.c_ulong), ('send_event', ctypes.c_int),
                        ('display', ctypes.c_void_p), ('window', ctypes.c_ulong), ('message_type', ctypes.c_ulong),
                        ('format', ctypes.c_int), ('data', ctypes.c_long * 5), ('padding', ctypes.c_long * 24)]

        message = ClientMessage(33, 0, 1, display, int(self.window),
                                x11.XInternAtom(display, b'WM_PROTOCOLS', 0), 32)
        message.data[0] = x11.XInternAtom(display, b'WM_DELETE_WINDOW', 0)
        x11.XSendEvent(display, ctypes.c_ulong(int(self.window)), 0, ctypes.c_long(0), ctypes.byref(message))
        x11.XCloseDisplay(display)

    def ended(self, limit=20):
        """The exit code; fails when the program goes on."""
        try:
            return self.process.wait(limit * PATIENCE)
        except subprocess.TimeoutExpired as late:
            raise Missed(f'the client did not end within {limit} s') from late

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if kind:
            self.display.picture().save('last-picture.ppm')
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
