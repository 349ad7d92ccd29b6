// What the page's server lets in, and what it does with nonsense: node stream_test.mjs GCAD
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {Program} from './program.mjs';
import {RawStream, ask, streamPath, upgradeHeaders} from './stream.mjs';

let program = null;
const late = (ms) => new Promise((resolve) => setTimeout(resolve, ms, 'late'));

before(async () => { program = await Program.start(process.argv[2], ['--no-module']); });
after(async () => { await program.end(); });

// The service answers still.
async function isAlive() {
  const stream = await RawStream.open(program.address);
  const end = Date.now() + 10000;
  while (stream.bytes === 0 && Date.now() < end) await late(10);
  const told = stream.bytes;
  stream.end();
  return told > 0;
}

test('the page is given to its own address alone', async () => {
  const good = await ask(program.address, new URL(program.address).search.replace('?', '/?'));
  assert.equal(good.status, 200);
  assert.match(good.text, /<canvas/);
  assert.match(good.headers['content-security-policy'], /default-src 'none'/);
  assert.equal((await ask(program.address, '/')).status, 403);
  assert.equal((await ask(program.address, '/index.html')).status, 403);
  assert.equal((await ask(program.address, '/?token=')).status, 403);
  assert.equal((await ask(program.address, `/?token=${'0'.repeat(40)}`)).status, 403);
  assert.equal((await ask(program.address, '/?token=short')).status, 403);
  const path = new URL(program.address).search.replace('?', '/?');
  assert.equal((await ask(program.address, path, {Host: 'example.org'})).status, 403);
  assert.equal((await ask(program.address, '/page.css')).status, 200);
  for (const absent of ['/../options.cpp', '/etc/passwd', '/page/main.js', '/page.css/x'])
    assert.equal((await ask(program.address, absent)).status, 404, absent);
});

test('the stream wants the token and the page as its origin', async () => {
  const {address} = program;
  const origin = new URL(address).origin;
  for (const [path, from] of [['/stream', origin], [`/stream?token=${'0'.repeat(40)}`, origin],
                              [streamPath(address), 'http://example.org'], [streamPath(address), null],
                              [streamPath(address), 'null'], [streamPath(address), `${origin}.example.org`],
                              [streamPath(address).replace('stream', 'other'), origin]]) {
    const answer = await ask(address, path, upgradeHeaders(address, from));
    assert.equal(answer.status, 403, `${path} from ${from}`);
    assert.equal(answer.socket, undefined);
  }
  const good = await ask(address, streamPath(address), upgradeHeaders(address));
  assert.equal(good.status, 101);
  good.socket.destroy();
});

test('nonsense ends the connection that talks it, and no other', async () => {
  const nonsense = ['', '{', 'null', '[]', '"view"', '{"t":5}', '{"t":"no such"}', '{"t":"line"}', '{"t":"line","text":5}',
                    '{"t":"move","x":"1","y":2}', '{"t":"move","x":1e999,"y":0}', '{"t":"pick"}', '{"t":"box","x":1,"y":2}',
                    '{"t":"view","x":0,"y":0,"u":0,"w":10,"h":10}', '{"t":"view","x":0,"y":0,"u":1,"w":1e9,"h":10}',
                    '{"t":"view","x":0,"y":0,"u":-1,"w":10,"h":10}', '['.repeat(60000), '{"t":'.repeat(9000),
                    '{"t":"complete","text":"a","n":1e300}', '{"t":"line","text":"\\ud800"}'];
  const listening = await RawStream.open(program.address);
  while (nonsense.length > 0) {
    await Promise.all(nonsense.splice(0, 8).map(async (message) => {
      const stream = await RawStream.open(program.address);
      stream.send(message);
      assert.notEqual(await Promise.race([stream.ended, late(10000)]), 'late', message.slice(0, 60));
    }));
  }
  for (const bytes of [Buffer.alloc(64, 0xff), Buffer.alloc(4096, 0xa5)]) {
    const stream = await RawStream.open(program.address);
    stream.raw(bytes);
    assert.notEqual(await Promise.race([stream.ended, late(5000)]), 'late');
  }
  const binary = await RawStream.open(program.address);
  binary.send('{"t":"esc"}', 2);
  assert.notEqual(await Promise.race([binary.ended, late(5000)]), 'late');
  const huge = await RawStream.open(program.address);
  huge.send(`{"t":"line","text":"${'x'.repeat(200000)}"}`);
  assert.notEqual(await Promise.race([huge.ended, late(5000)]), 'late');
  assert.equal(await Promise.race([listening.ended, late(50)]), 'late');
  listening.end();
  assert.equal(await isAlive(), true);
});

test('a flood ends the connection; the service answers others meanwhile and after', async () => {
  const stream = await RawStream.open(program.address);
  const frame = JSON.stringify({t: 'move', x: 1, y: 2});
  let sent = 0;
  const flooding = (async () => {
    while (stream.socket.writable && sent < 300000) {
      for (let i = 0; i < 200; ++i, ++sent) stream.send(frame);
      await late(0);
    }
  })();
  assert.equal(await isAlive(), true);
  assert.notEqual(await Promise.race([stream.ended, late(20000)]), 'late', `after ${sent} messages`);
  stream.end();
  await flooding;
  assert.equal(await isAlive(), true);
});

test('one that never reads is not given memory without end', async () => {
  const stream = await RawStream.open(program.address);
  stream.socket.pause();
  const other = await RawStream.open(program.address);
  other.send(JSON.stringify({t: 'line', text: '(repeat 200000 (princ "0123456789012345678901234567890123456789\\n"))'}));
  assert.equal(await isAlive(), true);
  other.send(JSON.stringify({t: 'stop'}));
  stream.end();
  other.end();
  assert.equal(await isAlive(), true);
});

test('only so many pages at a time', async () => {
  const streams = [];
  await late(200);  // those of the tests before are gone
  for (let i = 0; i < 16; ++i) streams.push(await RawStream.open(program.address));
  const answer = await ask(program.address, streamPath(program.address), upgradeHeaders(program.address));
  assert.equal(answer.status, 503);
  for (const stream of streams) stream.end();
  await late(100);
  assert.equal(await isAlive(), true);
});
