// gcad view, started for a test.
import {spawn} from 'node:child_process';
import {until} from './browser.mjs';

export class Program {
  static async start(gcad, args = []) {
    const program = new Program();
    program.out = program.err = '';
    const [command, ...before] = [...(process.env.GC_EMULATOR ?? '').split(' ').filter(Boolean), gcad];
    program.process = spawn(command, [...before, 'view', ...args], {stdio: ['ignore', 'pipe', 'pipe']});
    program.process.stdout.on('data', (data) => { program.out += data; });
    program.process.stderr.on('data', (data) => { program.err += data; });
    program.ended = new Promise((resolve) => program.process.on('exit', (code, signal) => resolve(code ?? signal)));
    await until('the address', () => program.out.includes('\n') || program.process.exitCode !== null);
    program.address = program.out.split('\n')[0];
    return program;
  }

  // Ctrl-C; the exit code.
  async end() {
    if (this.process.exitCode === null) this.process.kill('SIGINT');
    const killer = setTimeout(() => this.process.kill('SIGKILL'), 10000);
    const code = await this.ended;
    clearTimeout(killer);
    return code;
  }
}
