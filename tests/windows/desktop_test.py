#!/usr/bin/python3
"""What a user of Windows meets at the desktop, under Wine:

    xvfb-run -a python3 desktop_test.py --build BUILD --source SOURCE

Message boxes are shown, read back through Windows and closed by a key of the X server; consoles are read back from
their screen buffers (desktop_probe.cpp); the viewer opens a browser that notes its arguments.
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse
import zipfile
from pathlib import Path

RESULTS = ['structure.dxf', 'deformation.dxf', 'Node_Dis.txt', 'Shell element node stress.txt',
           'Shell element average node stress.txt', 'Tarn+Vexo_AverageStrs.txt']
PATIENCE = 60  # seconds


def windows(path):
    """A path of this system as Wine's drive Z shows it."""
    return 'Z:' + str(path).replace('/', '\\')


class Desktop(unittest.TestCase):
    def setUp(self):
        self.place = Path(tempfile.mkdtemp(prefix='tarnvexo windows '))
        self.notes = Path(tempfile.mkdtemp(prefix='tarnvexo-notes-'))
        for directory in (self.place, self.notes):
            self.addCleanup(shutil.rmtree, directory)

    def start(self, words, folder=None):
        # Into a file: Wine's desktop, which the first program with a window starts, would keep a pipe open.
        note = tempfile.NamedTemporaryFile(delete=False, dir=self.notes)
        with note:
            process = subprocess.Popen(['wine', *map(str, words)], cwd=folder or self.place, env=ENVIRONMENT,
                                       stdin=subprocess.DEVNULL, stdout=note, stderr=subprocess.DEVNULL)
        process.note = Path(note.name)
        return process

    def finish(self, process):
        """Waits for its end; what it has written to standard output."""
        process.wait(timeout=PATIENCE)
        return process.note.read_bytes()

    def output(self, words, folder=None):
        return self.finish(self.start(words, folder)).decode('utf-8').replace('\r\n', '\n')

    def close_box(self):
        """Caption and text of the message box that is shown; the box is closed by Return."""
        caption, text = self.output([PROBE, 'box']).rstrip('\n').split('\n', 1)
        begin = time.monotonic()
        while time.monotonic() - begin < PATIENCE:
            found = subprocess.run(['xdotool', 'search', '--onlyvisible', '--name', caption], capture_output=True,
                                   text=True, env=ENVIRONMENT).stdout.split()
            if not found:
                return caption, text
            subprocess.run(['xdotool', 'windowfocus', found[0], 'key', 'Return'], env=ENVIRONMENT, capture_output=True)
            time.sleep(0.5)
        self.fail('the box stays')

    def model(self, name, case='single_quad', folder=None):
        folder = folder or self.place
        folder.mkdir(parents=True, exist_ok=True)
        shutil.copy(SOURCE / 'tests/cases' / case / 'fem_solving.txt', folder / name)
        return folder / name

    # ---- message boxes

    def test_a_missing_model_is_told_in_a_message_box(self):
        run = self.start([PROGRAM])
        self.assertEqual(self.close_box(), ('Warning!', 'File Read Error!'))
        self.assertIn(b'Preprocessor file read error!\r\n', self.finish(run))
        self.assertEqual(run.returncode, 1)

    def test_a_missing_viewer_is_told_in_a_message_box_after_the_results(self):
        self.model('fem_solving.txt')
        run = self.start([PROGRAM])
        self.assertEqual(self.close_box(),
                         ('Warning!', 'Program "Tarn+Vexo_Contour.exe"does not exist! Please copy it to the current '
                                      'folder and run it.'))
        self.finish(run)
        self.assertEqual(run.returncode, 0)
        for name in RESULTS:
            self.assertTrue((self.place / name).stat().st_size > 0, name)

    # ---- consoles

    def test_a_double_click_solves_the_model_opens_the_viewer_and_keeps_the_window_until_a_key(self):
        folder = self.place / '机翼 模型'
        self.model('fem_solving.txt', folder=folder)
        for program in (PROGRAM, CONTOUR):
            shutil.copy(program, folder)
        BROWSER_NOTE.unlink(missing_ok=True)
        screen = self.output([PROBE, 'own-console', windows(folder / 'tarnvexo.exe')], folder)
        self.assertIn('结构质心坐标(', screen)
        self.assertIn('key: yes\nexit code: 0\n', screen)
        for name in RESULTS:
            self.assertTrue((folder / name).exists(), name)
        self.assertIn('<title>tarnvexo', self.shown_page())

    def test_models_dropped_onto_the_program_are_solved_and_shown(self):
        models = [self.model(name, folder=self.place / '模型') for name in ('机翼 é.txt', 'fem_solving.txt')]
        BROWSER_NOTE.unlink(missing_ok=True)
        screen = self.output([PROBE, 'own-console', windows(PROGRAM), *map(windows, models)])
        self.assertEqual(len(re.findall(r'^ *verdict', screen, re.M)), 2, screen)
        self.assertIn('模型', screen)
        self.assertIn('key: yes\nexit code: 0\n', screen)
        for folder in (models[0].parent / '机翼 é results', models[1].parent):
            for name in RESULTS:
                self.assertTrue((folder / name).exists(), folder / name)
        self.assertIn('<title>tarnvexo', self.shown_page())

    def test_a_console_shows_chinese_in_either_code_page_and_asks_for_no_key(self):
        self.model('fem_solving.txt')
        shutil.copy(CONTOUR, self.place)
        for code_page in ('936', '65001', '437'):
            screen = self.output([PROBE, 'console', code_page, windows(PROGRAM)])
            self.assertIn('结构质心坐标(', screen)
            self.assertIn('模型总质量=', screen)
            self.assertIn('key: no\nexit code: 0\n', screen)

    def test_progress_is_rewritten_in_place_and_messages_are_readable_in_a_console(self):
        model = self.model('机翼.txt', folder=self.place / '模型')
        results = SOURCE / 'tests/cases/single_quad/expected'
        screen = self.output([PROBE, 'console', '936', windows(PROGRAM), 'view', windows(results), '--model',
                              windows(model), '--out', windows(self.place / '页.html')])
        self.assertEqual(len(re.findall(r'^\[1/\d+\] +read', screen, re.M)), 1, screen)
        self.assertNotIn('…', screen)  # of a stage that goes on: its line is written over
        self.assertNotIn('\x1b', screen)
        self.assertIn('页.html', screen)
        self.assertIn('exit code: 0\n', screen)
        screen = self.output([PROBE, 'console', '936', windows(PROGRAM), 'solve', windows(model), '-q', '-o', 'run'])
        self.assertIn('rad/time²', screen)
        screen = self.output([PROBE, 'console', '936', windows(PROGRAM), 'solve', windows(self.place / '没有.txt')])
        self.assertIn('没有.txt: error: there is no such file', screen)
        self.assertIn('exit code: 4\n', screen)

    def test_ctrl_c_ends_a_run_with_nothing_unfinished(self):
        self.output([BUILD / 'tools/generate_model.exe', 'ship', '200000', 'model.txt'])
        for stage in ('factorise', 'write'):
            with self.subTest(stage):
                run = self.place / stage
                run.mkdir()
                screen = self.output([PROBE, 'interrupted', stage, windows(PROGRAM), 'solve', 'model.txt', '-o', stage])
                self.assertIn('interrupted: no results were written', screen)
                self.assertIn('exit code: 130\n', screen)
                self.assertEqual(list(run.iterdir()), [])

    # ---- the viewer

    def shown_page(self):
        """The page that the browser was given."""
        begin = time.monotonic()
        while not BROWSER_NOTE.exists() and time.monotonic() - begin < PATIENCE:
            time.sleep(0.1)
        address = urllib.parse.unquote(BROWSER_NOTE.read_text(encoding='utf-8').strip())
        file = re.sub(r'^file:/*', '/', address)
        file = re.sub(r'^/?([A-Za-z]):', lambda drive: str(DRIVES / (drive[1].lower() + ':')), file)
        page = Path(file).read_text(encoding='utf-8')
        self.assertTrue(page.lower().startswith('<!doctype html'), page[:80])
        return page

    def test_the_viewer_opens_the_page_of_the_results_beside_it(self):
        shutil.copytree(SOURCE / 'tests/cases/single_quad/expected', self.place, dirs_exist_ok=True)
        BROWSER_NOTE.unlink(missing_ok=True)
        run = self.start([CONTOUR])
        self.assertEqual(self.finish(run), b'')
        self.assertEqual(run.returncode, 0)
        self.assertIn('<title>tarnvexo', self.shown_page())

    # ---- the archive

    def test_the_archive_holds_programs_that_run_readable_texts_examples_and_licences(self):
        archive, = BUILD.glob('tarnvexo-*-windows.zip')
        with zipfile.ZipFile(archive) as file:
            names = file.namelist()
            file.extractall(self.place)
        top = self.place / archive.stem
        readme = (top / 'README.txt').read_bytes()
        self.assertTrue(readme.startswith(b'\xef\xbb\xbf'))
        self.assertIn('双击', readme.decode('utf-8'))
        texts = [*top.rglob('*.txt'), *top.rglob('*.md')]
        self.assertIn(top / 'docs/windows.md', texts)
        for text in texts:
            with self.subTest(text.relative_to(top)):
                content = text.read_bytes()
                self.assertEqual(content.count(b'\r\n'), content.count(b'\n'))
                self.assertNotIn(b'\r\r', content)
                if text.suffix == '.md':
                    for link in re.findall(r'\]\(([^)#\s]+)', content.decode('utf-8')):
                        self.assertTrue(re.match('[a-z]+:', link) or (text.parent / link).exists(), link)
        licences = {name.split('/', 2)[2] for name in names if '/licences/' in name and not name.endswith('/')}
        for licence in ('tarnvexo.txt', 'metis.txt', 'suitesparse.txt', 'highway.txt', 'cpp-httplib.txt',
                        'libcli11-dev.txt', 'nlohmann-json3-dev.txt', 'libtinygltf-dev.txt', 'libz-mingw-w64-dev.txt',
                        'mingw-w64-x86-64-dev.txt', 'gcc-mingw-w64-x86-64-posix-runtime.txt'):
            self.assertIn(licence, licences)
        report = self.output([top / 'tarnvexo.exe', 'solve', 'examples\\elements', '-o', 'run', '--quiet'], top)
        self.assertRegex(report, r'verdict +solved')
        self.assertTrue((top / 'run/Node_Dis.txt').exists())


if __name__ == '__main__':
    parser = argparse.ArgumentParser()
    parser.add_argument('--build', type=Path, required=True)
    parser.add_argument('--source', type=Path, required=True)
    options, rest = parser.parse_known_args()
    BUILD, SOURCE = options.build.resolve(), options.source.resolve()
    PROGRAM, CONTOUR = BUILD / 'tarnvexo.exe', BUILD / 'Tarn+Vexo_Contour.exe'
    PROBE = BUILD / 'tests/desktop_probe.exe'
    # A prefix of its own: the first program of one decides whether there is a display.
    PREFIX = BUILD / 'wine-desktop'
    DRIVES = PREFIX / 'dosdevices'
    ENVIRONMENT = {**os.environ, 'WINEPREFIX': str(PREFIX), 'WINEDEBUG': '-all',
                   'WINEDLLOVERRIDES': 'mscoree,mshtml='}
    BROWSER_NOTE = BUILD / 'browser-note.txt'
    browser = BUILD / 'browser-that-notes.sh'
    browser.write_text('#!/bin/sh\nprintf "%%s\\n" "$*" >"%s.part" && mv "%s.part" "%s"\n' % ((BROWSER_NOTE,) * 3))
    browser.chmod(0o755)
    for key, *value in ((r'HKCU\Software\Wine\WineBrowser', '/v', 'Browsers', '/d', str(browser)),
                        (r'HKCR\.html', '/ve', '/d', 'htmlfile'),
                        (r'HKCR\htmlfile\shell\open\command', '/ve', '/d', 'winebrowser.exe "%1"')):
        subprocess.run(['wine', 'reg', 'add', key, *value, '/f'], env=ENVIRONMENT, check=True, capture_output=True)
    try:
        result = unittest.main(argv=[sys.argv[0], *rest], verbosity=2, exit=False).result
    finally:
        subprocess.run(['wineserver', '-k'], env=ENVIRONMENT, check=False)
        browser.unlink()
    sys.exit(0 if result.wasSuccessful() else 1)
