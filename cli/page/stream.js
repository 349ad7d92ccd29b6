// The connection to the program: JSON messages both ways, shapes as bytes.

const AGAIN_MS = 700;

export class Stream {
  // handlers: {json(message), bytes(DataView), state("open" | "lost" | "refused")}
  constructor(handlers) {
    this.handlers = handlers;
    this.socket = null;
    this.connect();
  }

  connect() {
    const socket = new WebSocket(`ws://${location.host}/stream${location.search}`);
    socket.binaryType = 'arraybuffer';
    let opened = false;
    socket.onopen = () => {
      opened = true;
      this.socket = socket;
      this.handlers.state('open');
    };
    socket.onmessage = (event) => {
      if (typeof event.data === 'string') this.handlers.json(JSON.parse(event.data));
      else this.handlers.bytes(new DataView(event.data));
    };
    socket.onclose = (event) => {
      this.socket = null;
      const refused = event.code === 1008 || event.code === 1007;
      this.handlers.state(refused ? 'refused' : 'lost');
      if (!refused) setTimeout(() => this.connect(), opened ? AGAIN_MS : 2 * AGAIN_MS);
    };
  }

  send(message) {
    if (this.socket?.readyState === WebSocket.OPEN) this.socket.send(JSON.stringify(message));
  }
}
