// A plain client of the page's stream, for what no browser does.
import {randomBytes} from 'node:crypto';
import {request} from 'node:http';

// Asks for the address's path with the headers: {status, text}, or {socket, head} when it was upgraded.
export function ask(address, path, headers = {}) {
  const url = new URL(address);
  return new Promise((resolve, reject) => {
    const asked = request({host: url.hostname, port: url.port, path, headers});
    asked.on('response', (response) => {
      let text = '';
      response.setEncoding('utf8');
      response.on('data', (data) => { text += data; });
      response.on('end', () => resolve({status: response.statusCode, headers: response.headers, text}));
    });
    asked.on('upgrade', (response, socket, head) => resolve({status: response.statusCode, socket, head}));
    asked.on('error', reject);
    asked.end();
  });
}

export function upgradeHeaders(address, origin = new URL(address).origin) {
  return {Connection: 'Upgrade', Upgrade: 'websocket', 'Sec-WebSocket-Version': '13',
          'Sec-WebSocket-Key': randomBytes(16).toString('base64'), ...(origin ? {Origin: origin} : {})};
}

export const streamPath = (address) => `/stream${new URL(address).search}`;

export class RawStream {
  static async open(address) {
    const {socket, head, status} = await ask(address, streamPath(address), upgradeHeaders(address));
    if (!socket) throw new Error(`refused: ${status}`);
    const stream = new RawStream();
    stream.socket = socket;
    stream.bytes = 0;
    stream.rest = Buffer.alloc(0);
    stream.messages = [];  // that nobody has looked at
    stream.waiting = null;
    stream.ended = new Promise((resolve) => socket.on('close', resolve));
    socket.on('data', (data) => stream.take(data));
    socket.on('error', () => {});
    stream.take(head);
    return stream;
  }

  // Frames of a server are neither masked nor cut in pieces here.
  take(data) {
    this.bytes += data.length;
    this.rest = Buffer.concat([this.rest, data]);
    for (;;) {
      const {rest} = this;
      const short = rest.length < 2 ? 0 : rest[1] & 127;
      const head = short === 126 ? 4 : short === 127 ? 10 : 2;
      if (rest.length < head) return;
      const length = short === 126 ? rest.readUInt16BE(2) : short === 127 ? Number(rest.readBigUInt64BE(2)) : short;
      if (rest.length < head + length) return;
      const payload = rest.subarray(head, head + length);
      this.rest = rest.subarray(head + length);
      const opcode = rest[0] & 15;
      if (opcode === 1) this.messages.push(JSON.parse(payload));
      if (opcode === 2) this.messages.push(payload);
      if (opcode === 8) this.socket.end();
      this.waiting?.();
    }
  }

  // The next message that is wanted; those before it are passed over.
  async message(isWanted) {
    for (;;) {
      while (this.messages.length > 0) {
        const message = this.messages.shift();
        if (isWanted(message)) return message;
      }
      await new Promise((resolve) => { this.waiting = resolve; });
    }
  }

  // A frame as browsers send it; opcode 1 is text, 2 bytes.
  send(payload, opcode = 1) {
    const body = Buffer.from(payload), mask = randomBytes(4);
    const head = body.length < 126 ? Buffer.from([0x80 | opcode, 0x80 | body.length])
        : body.length < 65536 ? Buffer.from([0x80 | opcode, 0x80 | 126, body.length >> 8, body.length & 255])
        : (() => {
          const long = Buffer.alloc(10);
          long[0] = 0x80 | opcode;
          long[1] = 0x80 | 127;
          long.writeBigUInt64BE(BigInt(body.length), 2);
          return long;
        })();
    for (let i = 0; i < body.length; ++i) body[i] ^= mask[i & 3];
    return this.raw(Buffer.concat([head, mask, body]));
  }

  raw(bytes) { return this.socket.writable && this.socket.write(bytes); }
  end() { this.socket.destroy(); }
}
