// The page's view through the eyepoint follows a moving entity: vcmover flies an aircraft
// north in a straight line, vcctl tethers the viewer to it 50 m behind and 20 m up, and
// the page, read twice over a second and a half apart, must show the eye moved with the
// aircraft and still at that offset in the aircraft's local east-north-up frame. A text
// hung on the aircraft moves with it; one hung on an entity nobody has waits, and says so.
//   node follow_test.mjs BIN_DIR FDD_FILE SCREENSHOT
import { check, driver, keepScreenshot, launch, open, scenario, start, until, viewerOnHub } from './harness.mjs';

const [binDir, fdd, screenshot] = process.argv.slice(2);
const puppeteer = await driver(binDir);

// WGS 84 east, north and up at a geocentric point, worked out here independently of the
// viewer's code (Bowring's latitude, iterated).
function enuAt(p) {
  const a = 6378137, f = 1 / 298.257223563, e2 = f * (2 - f);
  const lon = Math.atan2(p[1], p[0]), r = Math.hypot(p[0], p[1]);
  let lat = Math.atan2(p[2], r * (1 - e2));
  for (let i = 0; i < 5; ++i) {
    const n = a / Math.sqrt(1 - e2 * Math.sin(lat) ** 2);
    lat = Math.atan2(p[2] + e2 * n * Math.sin(lat), r);
  }
  const [sl, cl, sp, cp] = [Math.sin(lon), Math.cos(lon), Math.sin(lat), Math.cos(lat)];
  return { east: [-sl, cl, 0], north: [-sp * cl, -sp * sl, cp], up: [cp * cl, cp * sl, sp] };
}
const dot = (u, v) => u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
const minus = (u, v) => u.map((x, i) => x - v[i]);
const length = (u) => Math.hypot(...u);

// The eye's offset from the entity in the entity's east-north-up frame.
function offsetOf(look) {
  const at = look.entities['1:1:1'], axes = enuAt(at), d = minus(look.eye, at);
  return [dot(d, axes.east), dot(d, axes.north), dot(d, axes.up)];
}

await scenario(async () => {
  const { url, pageUrl, vcctl } = await viewerOnHub(binDir, fdd, 'FollowTest');
  await start(binDir, 'vcmover', ['--federation', url, '--fdd', fdd, '--count', '1', '--track', 'line',
    '--speed', '60', '--marking', 'HAWK', '--rate', '20'], /ready/);
  const browser = await launch(puppeteer);
  const page = await browser.newPage();
  const errors = [];
  page.on('pageerror', (e) => errors.push(e.message));
  await page.setViewport({ width: 1600, height: 1000 });
  await open(page, pageUrl);

  await vcctl('tether', '1:1:1', '--offset', '0,-50,20');
  await vcctl('draw', 'text3d', '--id', '5', '--attach', '1:1:1', '--offset', '0,0,30', 'HAWK lead');
  await vcctl('draw', 'text3d', '--id', '6', '--attach', '9:9:9', 'Nobody');
  await until(page, 'the eye follows the aircraft', () => {
    const l = window.vcLive.look();
    return l.placed && l.follows === '1:1:1' && l.shown === 1;
  });
  await until(page, 'the page says how many entities it shows', () =>
    document.getElementById('entity-count').textContent.startsWith('showing 1 entity'));

  // What the page shows in one frame: the eye camera, the aircraft and the text on it.
  const read = () => page.evaluate(() => {
    const look = window.vcLive.look();
    window.vcLive.scene3d.updateMatrixWorld(true);  // as the next frame will
    const text = window.vcLive.scene3d.getObjectByName('object-5');
    const p = text ? text.children[0].getWorldPosition(new THREE.Vector3()) : null;
    look.text = p ? window.vcLive.toWorld(p) : null;
    return look;
  });
  const first = await read();
  await new Promise((r) => setTimeout(r, 1500));
  const second = await read();

  const moved = minus(second.entities['1:1:1'], first.entities['1:1:1']);
  const north = enuAt(first.entities['1:1:1']).north;
  check('the aircraft moved north on the page', dot(moved, north) > 30 && length(moved) - dot(moved, north) < 1,
    { moved: length(moved), north: dot(moved, north) });
  const eyeMoved = minus(second.eye, first.eye);
  check('the eye moved with it', length(minus(eyeMoved, moved)) < 1, { eyeMoved, moved });
  for (const [when, look] of [['first', first], ['second', second]]) {
    const o = offsetOf(look);
    check(`the eye keeps the commanded offset, ${when} read`,
      Math.abs(o[0]) < 0.5 && Math.abs(o[1] + 50) < 0.5 && Math.abs(o[2] - 20) < 0.5, o);
  }
  // The tether's orientation was left as it was: level, looking north.
  const axes = enuAt(second.eye);
  check('the eye looks north, level', dot(second.forward, axes.north) > 0.9999, second.forward);
  for (const [when, look] of [['first', first], ['second', second]]) {
    const t = look.text && minus(look.text, look.entities['1:1:1']);
    const up = t && enuAt(look.entities['1:1:1']).up;
    check(`the text hung on the aircraft is 30 m above it, ${when} read`,
      t && Math.abs(dot(t, up) - 30) < 0.5 && length(t) < 30.5, t);
  }
  await until(page, 'the text hung on an unknown entity waits, and the page says why', () => {
    const row = document.getElementById('drawing-6');
    return row && row.dataset.note === 'entity 9:9:9 not found' &&
      !window.vcLive.scene3d.getObjectByName('object-6') &&
      document.querySelector('#picture svg')?.textContent.includes('9:9:9');
  });
  check('the page raised no error', errors.length === 0, errors);
  await keepScreenshot(page, screenshot);
});
