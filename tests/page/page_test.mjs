// The page as people use it: node page_test.mjs GCAD MODULE
// Needs Chromium (in the path, or named by GC_CHROMIUM); says so and ends with 77 where there is none.
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {Browser, sleep, until} from './browser.mjs';
import {Program} from './program.mjs';

function findChromium() {
  if (process.env.GC_CHROMIUM) return process.env.GC_CHROMIUM;
  for (const name of ['chromium', 'chromium-browser', 'google-chrome']) {
    try {
      return execFileSync('sh', ['-c', `command -v ${name}`], {encoding: 'utf8'}).trim();
    } catch {
      // not this one
    }
  }
  return null;
}

const chromium = findChromium();
if (!chromium) {
  console.log('skipped: there is no Chromium; tools/setup page installs it');
  process.exit(77);
}
const gcad = process.argv[2];
const folder = mkdtempSync(join(tmpdir(), 'gcad-page-test-'));
let browser = null;

before(async () => { browser = await Browser.start(chromium); });
after(async () => {
  await browser?.end();
  rmSync(folder, {recursive: true, force: true});
});

// Runs `work` with a fresh program and a tab on its page.
async function withPage(args, work) {
  const program = await Program.start(gcad, args);
  try {
    const tab = await browser.open(program.address);
    await tab.mode('idle');
    await work(tab, program);
    assert.deepEqual(tab.errors, []);
    await tab.close();
    assert.equal(await program.end(), 0, program.err);
  } finally {
    await program.end();
  }
}

const ADD_LINE = '(setq e (kel_addline "ModelSpace" \'(0.0 0.0 0.0) \'(100.0 50.0 0.0)))';

// A line in the drawing, all of it on the screen.
async function withLine(work) {
  await withPage([], async (tab, program) => {
    await tab.type(ADD_LINE);
    await tab.shown('<Entity name: ');
    await tab.until('the shape', 'gcad.scene.shapes.size === 1');
    await tab.ask('Object.assign(gcad.view, {x: 100, y: 50, u: 0.5}), dispatchEvent(new Event("resize"))');
    await tab.ask('document.getElementById("zoom-in").click(), document.getElementById("zoom-out").click()');
    await tab.drawn();
    await work(tab, program);
  });
}

// What has been printed behind the last occurrence of the text.
async function printedBehind(tab, text) {
  const log = await tab.ask('document.getElementById("log").innerText');
  return log.slice(log.lastIndexOf(text) + text.length);
}

test('a new drawing: the page loads, a typed expression draws a line that is seen', async () => {
  await withPage([], async (tab) => {
    assert.equal(await tab.ask('document.title'), 'New drawing – gcad');
    assert.equal(await tab.ask('document.getElementById("empty").hidden'), false);
    await tab.type('(+ 1 2)');
    await tab.shown('3');
    await tab.type(ADD_LINE);
    await tab.until('the shape', 'gcad.scene.shapes.size === 1');
    await tab.drawn();
    assert.equal(await tab.inkAt('picture', 50, 25), true);
    assert.equal(await tab.inkAt('picture', 50, 60), false);
    assert.equal(await tab.ask('document.getElementById("empty").hidden'), true);
    await tab.type('(entdel e)');
    await tab.until('no shape', 'gcad.scene.shapes.size === 0');
    await tab.drawn();
    assert.equal(await tab.inkAt('picture', 50, 25), false);
    await tab.type('(/ 1 0)');
    await tab.shown('divide by zero');
    await tab.type('(list 1');
    await tab.until('a prompt for the rest', 'document.getElementById("prompt").textContent === ">"');
    await tab.type('2)');
    await tab.shown('(1 2)');
  });
});

test('selection by pick, window and crossing, with the properties of what is selected', async () => {
  await withLine(async (tab) => {
    const title = () => tab.ask('document.getElementById("properties").caption.textContent');
    const selected = (count) => tab.until(`${count} selected`, `gcad.overlay.selected.length === ${count}`);
    await tab.click(40, 20);
    await selected(1);
    assert.equal(await title(), 'Line');
    const rows = await tab.ask('document.getElementById("properties").innerText');
    assert.match(rows, /Start\s+0\.0, 0\.0, 0\.0/);
    assert.match(rows, /Layer\s+0/);
    await tab.type('(sslength (ssget "_I"))');
    await tab.shown('1');
    await tab.key('Escape');
    await selected(0);
    await tab.dragBox(-10, -10, 60, 70);  // a window holds only a part of it
    await sleep(100);
    await selected(0);
    await tab.dragBox(-10, -10, 120, 70);
    await selected(1);
    await tab.click(150, 5);
    await selected(0);
    await tab.dragBox(60, 70, 20, -10);  // to the left: a crossing
    await selected(1);
    await tab.type('(command "_.CIRCLE" \'(100 80) 10)');
    await tab.until('the circle', 'gcad.scene.shapes.size === 2');
    await tab.dragBox(-10, -10, 120, 95);
    await selected(2);
    assert.equal(await title(), '2 objects');
  });
});

test('a drag that moves: preview and rubber band follow the pointer, the click is the answer', async () => {
  await withLine(async (tab) => {
    await tab.type('(setq r (kel_ssdragmove "Copy Undo" (ssadd e) \'(0.0 0.0 0.0) "Where to: "))');
    await tab.mode('drag');
    assert.equal(await tab.ask('document.getElementById("prompt").textContent'), 'Where to:');
    assert.equal(await tab.ask('document.getElementById("keywords").innerText.replace(/\\s+/g, " ")'), 'Copy Undo');
    await tab.moveTo(60, 70);
    await tab.until('a frame', 'gcad.overlay.drag !== null');
    await tab.moveTo(80, 40);
    await tab.until('the frame of the place', 'Math.abs(gcad.overlay.drag[4] - 80) < 0.6 && Math.abs(gcad.overlay.drag[5] - 40) < 0.6');
    await tab.drawn();
    assert.equal(await tab.inkAt('overlay', 80 + 60, 40 + 30), true, 'the line where it would go');
    assert.equal(await tab.inkAt('overlay', 60 + 60, 70 + 30), false, 'nothing is left of the frame before');
    assert.equal(await tab.ask('gcad.overlay.lines.length'), 1);
    assert.equal(await tab.inkAt('overlay', 40, 20, 4), true, 'the band from the base to the cursor');
    await tab.click(90, 30);
    await tab.mode('idle');
    await tab.until('no band', 'gcad.overlay.lines.length === 0 && gcad.overlay.drag === null');
    const [x, y, z] = (await printedBehind(tab, 'Where to: ')).match(/\(([^)]*)\)/)[1].split(' ').map(Number);
    assert.ok(Math.abs(x - 90) < 0.6 && Math.abs(y - 30) < 0.6 && z === 0, `the point: ${x} ${y} ${z}`);

    await tab.type('(setq r (kel_ssdragmove_x (ssadd e) \'(0.0 0.0 0.0) "There: "))');  // the host's own drag
    await tab.mode('drag');
    await tab.moveTo(80, 40);
    await tab.until('the frame of the place', 'gcad.overlay.drag && Math.abs(gcad.overlay.drag[4] - 80) < 0.6');
    await tab.click(70, 50);
    await tab.mode('idle');
    assert.match(await printedBehind(tab, 'There: '), /\((69|70)\.?\d* (49|50)\.?\d* 0\.0\)/);
  });
});

test('a drag that turns gives the angle; keywords, Enter and Escape end drags', async () => {
  await withLine(async (tab) => {
    const turn = '(setq r (kel_ssdragrotate "Copy Undo" (ssadd e) \'(50.0 25.0 0.0) "Angle: "))';
    await tab.type(turn);
    await tab.mode('drag');
    await tab.moveTo(50, 95);
    await tab.until('a quarter turn', 'gcad.overlay.drag && Math.abs(gcad.overlay.drag[1] - 1) < 1e-3');
    await tab.drawn();
    assert.equal(await tab.inkAt('overlay', 50 - 12.5, 25 + 25), true, 'the line turned about its middle');
    await tab.click(50, 95);
    await tab.mode('idle');
    assert.ok(Math.abs(parseFloat(await printedBehind(tab, 'Angle: ')) - Math.PI / 2) < 0.02);

    await tab.type(turn);
    await tab.mode('drag');
    await tab.moveTo(70, 60);
    await tab.type('u');
    await tab.mode('idle');
    assert.match(await printedBehind(tab, 'Angle: '), /"Undo"/);

    await tab.type(turn);
    await tab.mode('drag');
    await tab.ask('[...document.querySelectorAll("#keywords button")].find((b) => b.textContent === "Copy").click()');
    await tab.mode('idle');
    assert.match(await printedBehind(tab, 'Angle: '), /"Copy"/);

    for (const key of ['Escape', 'Enter']) {
      await tab.type(turn);
      await tab.mode('drag');
      await tab.moveTo(70, 60);
      await tab.until('a frame', 'gcad.overlay.drag !== null');
      await tab.key(key);
      await tab.mode('idle');
      assert.match(await printedBehind(tab, 'Angle: '), /nil/);
      await tab.until('nothing left of it', 'gcad.overlay.lines.length === 0 && gcad.overlay.drag === null');
    }
  });
});

test('prompts of programs take clicks on points, objects and windows', async () => {
  await withLine(async (tab) => {
    await tab.type('(setq p (getpoint \'(10 10) "From: "))');
    await tab.mode('point');
    assert.deepEqual(await tab.ask('gcad.overlay.band'), [10, 10]);
    await tab.click(30, 60);
    await tab.mode('idle');
    const [x, y] = (await printedBehind(tab, 'From: ')).match(/\(([^)]*)\)/)[1].split(' ').map(Number);
    assert.ok(Math.abs(x - 30) < 0.6 && Math.abs(y - 60) < 0.6);
    await tab.type('(equal e (car (entsel "Which: ")))');
    await tab.mode('entity');
    await tab.click(40, 20);
    await tab.mode('idle');
    assert.match(await printedBehind(tab, 'Which: '), /T/);
    await tab.type('(sslength (ssget))');
    await tab.mode('objects');
    await tab.dragBox(120, 70, 20, -10);
    await tab.shown('Specify opposite corner').catch(() => {});
    await tab.mode('objects');
    await tab.key('Enter');
    await tab.mode('idle');
    assert.match(await printedBehind(tab, 'Select objects:'), /1\s*$/);
    await tab.type('(getpoint "Cancelled: ")');
    await tab.mode('point');
    await tab.key('Escape');
    await tab.mode('idle');
    assert.match(await printedBehind(tab, 'Cancelled: '), /cancelled/i);
  });
});

test('a command typed by its name asks for its points', async () => {
  await withPage([], async (tab) => {
    await tab.type('LINE');
    await tab.mode('point');
    await tab.type('10,10');
    await tab.until('the base', 'gcad.overlay.band !== null');
    await tab.click(60, 40);
    await tab.until('a line', 'gcad.scene.shapes.size === 1');
    await tab.key('Escape');
    await tab.mode('idle');
    await tab.type('U');
    await tab.until('it is undone', 'gcad.scene.shapes.size === 0');
  });
});

test('a program that never answers: the page stays alive and stops it', async () => {
  await withLine(async (tab) => {
    await tab.type('(while T (setq k 1))');
    await tab.mode('busy');
    const before = await tab.ask('gcad.scene.shapes.size');
    assert.equal(before, 1);
    // The network goes on: what comes into view is sent while the program runs.
    const [second] = await Promise.all([browser.open(await tab.ask('location.href'))]);
    await second.mode('busy');
    await second.until('the shape', 'gcad.scene.shapes.size === 1');
    await second.close();
    await tab.ask('document.getElementById("stop").click()');
    await tab.mode('idle');
    assert.match(await tab.log(), /cancelled/i);
    await tab.type('(+ 20 22)');
    await tab.shown('42');
  });
});

test('a reload in the middle of a drag finds it again', async () => {
  await withLine(async (tab) => {
    await tab.type('(setq r (kel_ssdragmove "" (ssadd e) \'(0.0 0.0 0.0) "Where to: "))');
    await tab.mode('drag');
    await tab.moveTo(80, 40);
    await tab.until('a frame', 'gcad.overlay.drag !== null');
    await tab.reload();
    await tab.until('the drag', 'document.body.dataset.mode === "drag" && gcad.overlay.drag !== null && gcad.scene.shapes.size === 1');
    await tab.shown('Where to: ');
    await tab.drawn();
    await tab.click(30, 20);
    await tab.mode('idle');
    const [x, y] = (await printedBehind(tab, 'Where to: ')).match(/\(([^)]*)\)/)[1].split(' ').map(Number);
    assert.ok(Math.abs(x - 30) < 1 && Math.abs(y - 20) < 1, `the point: ${x} ${y}`);
  });
});

test('a browser that is closed in the middle cancels what waits for it', async () => {
  const told = join(folder, 'told.txt');
  const script = join(folder, 'closed.lsp');
  const say = (what) => `(progn (setq f (open "${told.replaceAll('\\', '/')}" "a")) (princ ${what} f) (close f))`;
  writeFileSync(script, `(setq e (kel_addline "ModelSpace" '(0.0 0.0 0.0) '(100.0 50.0 0.0)))
    (defun c:asks () (setq r (kel_ssdragmove "" (ssadd e) '(0.0 0.0 0.0) "To: ")) ${say('(list "drag" r)')}
      (setq r (vl-catch-all-apply 'getpoint (list "Point: "))) ${say('(if (vl-catch-all-error-p r) "point cancelled" r)')}
      (princ))`);
  const program = await Program.start(gcad, ['-l', script]);
  const other = await Browser.start(chromium);
  try {
    const tab = await other.open(program.address);
    await tab.mode('idle');
    await tab.type('asks');
    await tab.mode('drag');
    await tab.moveTo(20, 20);
    await tab.until('a frame', 'gcad.overlay.drag !== null');
    other.kill();
    await until('the cancel', () => existsSync(told) && readFileSync(told, 'utf8').includes('drag nil'));
    // The program is over, the service goes on.
    const again = await browser.open(program.address);
    await again.mode('idle');
    await again.type('(+ 20 22)');
    await again.shown('42');
    await again.close();
    assert.equal(await program.end(), 0);
  } finally {
    await other.end();
    await program.end();
  }
});

test('two tabs show the same drawing and answer the same prompts', async () => {
  await withLine(async (tab, program) => {
    const second = await browser.open(program.address);
    await second.mode('idle');
    await second.until('the shape', 'gcad.scene.shapes.size === 1');
    await tab.type('(setq p (getpoint "From: "))');
    await second.mode('point');
    await second.type('7,8');
    await tab.mode('idle');
    await tab.shown('(7.0 8.0 0.0)');
    await second.shown('(7.0 8.0 0.0)');
    await second.type('(command "_.CIRCLE" \'(50 25) 20)');
    await tab.until('the circle', 'gcad.scene.shapes.size === 2');
    await second.close();
    await tab.type('(+ 20 22)');
    await tab.shown('42');
  });
});

test('layers are switched, layouts are changed', async () => {
  await withPage([], async (tab) => {
    await tab.type('(progn (command "_.-LAYER" "_M" "Walls" "_C" "1" "" "") (command "_.LINE" \'(0 0) \'(100 50) ""))');
    await tab.until('the shape', 'gcad.scene.shapes.size === 1');
    const box = (name) => `[...document.querySelectorAll("#layers li")].find((li) => li.dataset.layer === "${name}").querySelector("input")`;
    await tab.ask(`${box('walls')}.click()`);
    await tab.until('nothing', 'gcad.scene.shapes.size === 0');
    assert.equal(await tab.ask(`${box('walls')}.checked`), false);
    await tab.ask(`${box('walls')}.click()`);
    await tab.until('the shape', 'gcad.scene.shapes.size === 1');
    await tab.ask('document.querySelector("#layouts button:nth-child(2)").click()');
    await tab.until('the layout', 'document.querySelector("#layouts [aria-selected=true]").textContent === "Layout1"');
    await tab.ask('document.querySelector("#layouts button:nth-child(1)").click()');
    await tab.until('model space', 'document.querySelector("#layouts [aria-selected=true]").textContent === "Model"');
    await tab.until('the shape', 'gcad.scene.shapes.size === 1');
  });
});

test('the keyboard alone: history, completion, moving and zooming the view', async () => {
  await withLine(async (tab) => {
    const entry = () => tab.ask('document.getElementById("entry").value');
    await tab.type('(* 6 7)');
    await tab.shown('42');
    await tab.key('ArrowUp');
    assert.equal(await entry(), '(* 6 7)');
    await tab.key('ArrowUp');
    assert.equal(await entry(), ADD_LINE);
    await tab.key('ArrowDown');
    await tab.key('ArrowDown');
    assert.equal(await entry(), '');
    await tab.call('Input.insertText', {text: '(kel_ssdragm'});
    await tab.key('Tab');
    await tab.until('the completion', 'document.getElementById("entry").value.startsWith("(kel_ssdragmove")');
    await tab.until('a list', '!document.getElementById("completions").hidden');  // kel_ssdragmove_x is another
    await tab.key('Escape');
    await tab.key('Escape');
    assert.equal(await entry(), '');
    await tab.ask('gcad.overlay.canvas.focus()');
    const view = () => tab.ask('({...gcad.view})');
    const before = await view();
    await tab.key('ArrowRight');
    const moved = await view();
    assert.ok(moved.x > before.x && moved.y === before.y);
    await tab.key('+');
    assert.ok((await view()).u < moved.u);
    await tab.key('Home');
    const all = await view();
    assert.ok(Math.abs(all.x - 50) < 1e-6 && Math.abs(all.y - 25) < 1e-6);
    await tab.key('(');
    await tab.until('the command line', 'document.activeElement.id === "entry" && document.activeElement.value === "("');
  });
});
