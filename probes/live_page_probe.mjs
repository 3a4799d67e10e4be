// Hostile clients against vcviewer's live page and its standard input, with vcviewer and
// a hub as processes of their own and their default bounds. Under each attack the page
// (every one of its files, on fresh connections) must still load within a second, and
// vcviewer's resident memory must stay within the bound its README states.
//   node live_page_probe.mjs BIN_DIR FDD_FILE [--small]
// --small runs each attack with smaller sizes and for less time (CI). Prints one line per
// measurement; exits 0 when every bound held, 1 when one was passed (the line says which),
// 77 when built against another RTI (no hub to run vcviewer on).
import { spawn } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import { connect } from 'node:net';
import { join } from 'node:path';
import { createInterface } from 'node:readline';

const [binDir, fdd, size] = process.argv.slice(2);
const small = size === '--small';
const PAGE_MS = 1000; // the page loads within this, whatever the attack
const GROWTH_MIB = 48; // vcviewer's memory grows by no more than this under any attack
const files = ['/', '/page.js', '/view3d.js', '/page.css', '/three.min.js', '/OrbitControls.js'];

if (!existsSync(join(binDir, 'rtihub'))) {
  console.log('SKIP: built against another RTI, there is no hub to run vcviewer on');
  process.exit(77);
}

const children = [];
process.on('exit', () => {
  for (const c of children) if (c.exitCode === null) c.kill('SIGKILL');
});

// Every line a child prints is kept, so that a line that comes before anyone waits for it
// is found all the same.
function start(program, args) {
  const child = spawn(join(binDir, program), args, { stdio: ['pipe', 'pipe', 'inherit'] });
  children.push(child);
  child.seen = [];
  child.next = 0;
  createInterface({ input: child.stdout }).on('line', (line) => {
    child.seen.push(line);
    child.emit('seen');
  });
  return child;
}

// The first line from `child` after the last one matched that matches `re`.
function lineMatching(child, re, ms = 10000) {
  return new Promise((resolve, reject) => {
    const look = () => {
      for (; child.next < child.seen.length; child.next++) {
        const m = child.seen[child.next].match(re);
        if (m) {
          child.next++;
          clearTimeout(timer);
          child.off('seen', look);
          resolve(m);
          return;
        }
      }
    };
    const timer = setTimeout(() => {
      child.off('seen', look);
      reject(new Error(`no line matching ${re} in ${ms} ms`));
    }, ms);
    child.on('seen', look);
    look();
  });
}

const sleep = (ms) => new Promise((r) => setTimeout(r, ms));

function residentMiB(pid) {
  const m = readFileSync(`/proc/${pid}/status`, 'utf8').match(/VmRSS:\s+(\d+) kB/);
  return m ? Number(m[1]) / 1024 : -1;
}

// One file on a fresh connection; resolves with the milliseconds it took, rejects on
// anything but a whole 200 answer.
function fetchFile(port, path, ms = 10000) {
  return new Promise((resolve, reject) => {
    const t0 = performance.now();
    const s = connect(port, '127.0.0.1');
    const chunks = [];
    const timer = setTimeout(() => {
      s.destroy();
      reject(new Error(`${path}: no whole answer within ${ms} ms`));
    }, ms);
    s.on('connect', () => s.write(`GET ${path} HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n`));
    s.on('data', (d) => chunks.push(d));
    s.on('error', (e) => {
      clearTimeout(timer);
      reject(new Error(`${path}: ${e.message}`));
    });
    s.on('close', () => {
      clearTimeout(timer);
      const r = Buffer.concat(chunks);
      const head = r.subarray(0, r.indexOf('\r\n\r\n')).toString();
      const length = Number((head.match(/Content-Length: (\d+)/) || [])[1]);
      if (!head.startsWith('HTTP/1.1 200 ') || r.length - head.length - 4 !== length)
        reject(new Error(`${path}: ${head.split('\r\n')[0] || 'no answer'}`));
      else resolve(performance.now() - t0);
    });
  });
}

async function pageLoadMs(port) {
  const t0 = performance.now();
  await Promise.all(files.map((f) => fetchFile(port, f)));
  return performance.now() - t0;
}

let failed = false;
function check(what, value, bound, unit) {
  const ok = value <= bound;
  console.log(`${ok ? 'ok  ' : 'FAIL'} ${what}: ${value.toFixed(1)} ${unit} (bound ${bound} ${unit})`);
  if (!ok) failed = true;
}

// Loads the page every 200 ms while `attack` runs, and samples vcviewer's memory.
async function under(name, viewer, port, attack) {
  const base = residentMiB(viewer.pid);
  let worst = 0, peak = base, loads = 0, running = true;
  const attacking = attack().finally(() => (running = false));
  while (running) {
    try {
      worst = Math.max(worst, await pageLoadMs(port));
    } catch (e) {
      worst = Infinity;
      console.log(`     ${name}: ${e.message}`);
    }
    loads++;
    peak = Math.max(peak, residentMiB(viewer.pid));
    await sleep(200);
  }
  await attacking;
  peak = Math.max(peak, residentMiB(viewer.pid));
  check(`${name}: slowest of ${loads} page loads`, worst, PAGE_MS, 'ms');
  check(`${name}: vcviewer memory growth`, peak - base, GROWTH_MIB, 'MiB');
}

// Connections that send a request's head one byte at a time, a byte a second; each one
// the viewer closes is opened again at once.
async function slowHeaders(port, count, seconds) {
  const open = () => {
    const s = connect(port, '127.0.0.1');
    s.on('error', () => {});
    s.on('close', () => (s.closedByViewer = true));
    return s;
  };
  const sockets = Array.from({ length: count }, open);
  const head = 'GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Slow: ' + 'z'.repeat(4096);
  let reopened = 0;
  for (let t = 0; t < seconds; t++) {
    for (let i = 0; i < sockets.length; i++) {
      if (sockets[i].closedByViewer) {
        sockets[i] = open();
        reopened++;
      }
      sockets[i].write(head[t % head.length]);
    }
    await sleep(1000);
  }
  for (const s of sockets) s.destroy();
  console.log(`     (${reopened} slow connections were closed by the viewer and opened again)`);
}

// Requests made of many short headers, `mb` MB each, all at once.
function headerFloods(port, count, mb) {
  const line = Buffer.from('X-A: b\r\n');
  const block = Buffer.concat(Array(8192).fill(line)); // 64 KiB
  return Promise.all(
    Array.from({ length: count }, () => new Promise((resolve) => {
      const s = connect(port, '127.0.0.1');
      let sent = 0;
      const total = mb * 1024 * 1024;
      const more = () => {
        while (sent < total && !s.destroyed) {
          sent += block.length;
          if (!s.write(block)) return s.once('drain', more);
        }
        s.end();
      };
      s.on('connect', () => {
        s.write('GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n');
        more();
      });
      s.on('data', () => {});
      s.on('error', () => resolve());
      s.on('close', () => resolve());
    })),
  );
}

// `mb` MB on vcviewer's standard input without a line break, then a request.
async function endlessStdin(viewer, mb) {
  const block = Buffer.alloc(1024 * 1024, 'q');
  for (let i = 0; i < mb; i++)
    if (!viewer.stdin.write(block)) await new Promise((r) => viewer.stdin.once('drain', r));
  const answered = lineMatching(viewer, /^state /, 30000);
  viewer.stdin.write('\nstate\n');
  await answered;
}

const hub = start('rtihub', ['--listen', '127.0.0.1:0', '--quiet']);
const hubPort = (await lineMatching(hub, /^rtihub listening on 127\.0\.0\.1:(\d+)/))[1];
const viewer = start('vcviewer', ['--id', 'probe', '--federation', `rti://127.0.0.1:${hubPort}/Probe`,
  '--fdd', fdd, '--http', '127.0.0.1:0', '--quiet']);
const port = Number((await lineMatching(viewer, /^vcviewer page on http:\/\/127\.0\.0\.1:(\d+)\//))[1]);
await lineMatching(viewer, /^vcviewer probe ready/);
check('page load, no attack', await pageLoadMs(port), PAGE_MS, 'ms');

await under('40 connections sending their headers at 1 byte/s', viewer, port,
  () => slowHeaders(port, 40, small ? 4 : 20));
await under(`one request of ${small ? 2 : 10} MB of short headers`, viewer, port,
  () => headerFloods(port, 1, small ? 2 : 10));
await under(`four requests of ${small ? 6 : 30} MB of short headers at once`, viewer, port,
  () => headerFloods(port, 4, small ? 6 : 30));
await under(`${small ? 20 : 200} MB on standard input without a line break`, viewer, port,
  () => endlessStdin(viewer, small ? 20 : 200));

viewer.stdin.end('quit\n');
await lineMatching(viewer, /stopped: quit/);
hub.kill('SIGTERM');
console.log(failed ? 'live page probe: a bound was passed' : 'live page probe: every bound held');
process.exit(failed ? 1 : 0);
