// What the page tests share: starting the programs of a build as processes of their own,
// a headless Chromium to open vcviewer's page in, and the checks' bookkeeping.
// A test exits 0 when every check holds, 1 when one does not, 77 when there is no
// Chromium or no puppeteer-core to drive it (scripts/setup.sh installs both).
import { spawn, execFile } from 'node:child_process';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { promisify } from 'node:util';

const chromium = process.env.CHROMIUM || '/usr/bin/chromium';
const children = [];
let profile;
let browser;
let failures = 0;

function cleanUp() {
  for (const c of children) if (c.exitCode === null) c.kill('SIGKILL');
  if (profile) rmSync(profile, { recursive: true, force: true });
}
process.on('exit', cleanUp);

// puppeteer-core, or exit 77 when what the test needs is not on this machine.
export async function driver(binDir) {
  let puppeteer;
  try {
    puppeteer = (await import('puppeteer-core')).default;
  } catch {
    console.log('SKIP: puppeteer-core is not installed in tests/browser (run scripts/setup.sh)');
    process.exit(77);
  }
  if (!existsSync(join(binDir, 'rtihub'))) {
    console.log('SKIP: built against another RTI, there is no hub to run the scenario on');
    process.exit(77);
  }
  if (!existsSync(chromium)) {
    console.log(`SKIP: no Chromium at ${chromium} (run scripts/setup.sh)`);
    process.exit(77);
  }
  return puppeteer;
}

export async function launch(puppeteer) {
  profile = mkdtempSync(join(tmpdir(), 'vcviewer-page-'));
  browser = await puppeteer.launch({
    executablePath: chromium,
    headless: true,
    userDataDir: profile,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync',
      '--use-gl=angle', '--use-angle=swiftshader', '--enable-unsafe-swiftshader'],
  });
  return browser;
}

// Opens the page and waits for it to load. Chromium renders the 3D views in software, and on
// a machine busy with other builds and tests the first load alone has taken over 30 s
// (puppeteer's default bound), so the bound is generous: it only has to catch a page that
// never loads.
export async function open(page, url) {
  await page.goto(url, { waitUntil: 'load', timeout: 120000 });
}

// Starts a program of the build and waits (up to 20 s) for a line of its output that
// matches `pattern`.
export function start(binDir, program, args, pattern) {
  const child = spawn(join(binDir, program), args, { stdio: ['ignore', 'pipe', 'pipe'] });
  children.push(child);
  let transcript = '';
  child.stderr.on('data', (d) => { transcript += d; });
  return new Promise((resolve, reject) => {
    const timer = setTimeout(() => reject(new Error(`${program} did not start:\n${transcript}`)), 20000);
    createInterface({ input: child.stdout }).on('line', (line) => {
      transcript += line + '\n';
      const m = line.match(pattern);
      if (m) {
        clearTimeout(timer);
        resolve(m);
      }
    });
    child.on('exit', (code) => reject(new Error(`${program} exited with ${code}:\n${transcript}`)));
  });
}

// A hub, and vcviewer with its page on it; `vcctl(...)` runs vcctl against that viewer.
export async function viewerOnHub(binDir, fdd, federation) {
  const [, hubPort] = await start(binDir, 'rtihub', ['--listen', '127.0.0.1:0'], /listening on 127\.0\.0\.1:(\d+)/);
  const url = `rti://127.0.0.1:${hubPort}/${federation}`;
  const [, pageUrl] = await start(binDir, 'vcviewer',
    ['--id', 'viewer-1', '--federation', url, '--fdd', fdd, '--http', '127.0.0.1:0'],
    /^vcviewer page on (http:\/\/127\.0\.0\.1:\d+\/)$/);
  const vcctl = (...args) => promisify(execFile)(join(binDir, 'vcctl'),
    ['--federation', url, '--fdd', fdd, '--viewer', 'viewer-1', ...args]);
  return { url, pageUrl, vcctl };
}

export function check(what, ok, detail) {
  console.log(`${ok ? 'ok  ' : 'FAIL'} ${what}${ok || detail === undefined ? '' : `: ${JSON.stringify(detail)}`}`);
  if (!ok) failures += 1;
}

// Waits until the page's state satisfies `predicate` (run in the page); a generous bound,
// since the machine may be busy. On failure the last commands the page saw are shown.
export async function until(page, what, predicate, arg) {
  try {
    await page.waitForFunction(predicate, { timeout: 15000, polling: 50 }, arg);
    check(what, true);
    return true;
  } catch {
    check(what, false, await page.evaluate(() => window.vcLive.snapshot && window.vcLive.snapshot.commands.slice(-3)));
    return false;
  }
}

// Runs a test's scenario, counts anything it throws as a failed check, closes the
// browser and every program, and exits with the verdict.
export async function scenario(body) {
  try {
    await body();
  } catch (e) {
    check('the scenario ran', false, String(e && e.stack || e));
  } finally {
    if (browser) await browser.close();
  }
  cleanUp();
  process.exit(failures ? 1 : 0);
}

// The picture the page ended with, kept beside the build's outputs.
export async function keepScreenshot(page, path) {
  await page.screenshot({ path });
  console.log(`screenshot: ${path}`);
}
