// vcviewer's live page in a real, headless Chromium: a hub and vcviewer run as processes
// of their own, vcctl sends a scenario, and the page must show it as it happens without
// being reloaded. The last picture is kept as a screenshot beside the build's outputs.
//   node live_page_test.mjs BIN_DIR FDD_FILE SCREENSHOT
// Exits 0 when every check holds, 1 on the first that does not, 77 when there is no
// Chromium or no puppeteer-core to drive it (scripts/setup.sh installs both).
import { check, driver, keepScreenshot, launch, open, scenario, until, viewerOnHub } from './harness.mjs';

const [binDir, fdd, screenshot] = process.argv.slice(2);
const puppeteer = await driver(binDir);

await scenario(async () => {
  const { pageUrl, vcctl } = await viewerOnHub(binDir, fdd, 'PageTest');
  const browser = await launch(puppeteer);
  const page = await browser.newPage();
  const errors = [];
  page.on('pageerror', (e) => errors.push(e.message));
  page.on('requestfailed', (r) => { if (!r.url().endsWith('/events')) errors.push(`${r.url()} failed`); });
  await page.setViewport({ width: 1600, height: 1000 });
  await open(page, pageUrl);
  await until(page, 'the page gets the first snapshot', () => window.vcLive.received >= 1);
  check('three.js is served by vcviewer and runs', await page.evaluate(() => typeof THREE === 'object' && !!window.vcLive.scene3d));

  // A second page that goes away in the middle: the first must not notice.
  const other = await browser.newPage();
  await open(other, pageUrl);

  await vcctl('orbit', '1:1:1', '--radius', '500', '--rate', '0.1');
  await until(page, 'the eyepoint mode and its parameters', () =>
    document.getElementById('eye-mode').textContent === 'orbit' &&
    document.getElementById('eye').textContent.includes('radius=500'));
  // No entity 1:1:1 is in this federation: the page says so, and counts none.
  await until(page, 'the page saying the orbited entity is not known', () =>
    document.getElementById('eye-note').textContent === '(orbit: entity 1:1:1 not found)' &&
    document.getElementById('eye').textContent.includes('entities0'));
  await other.close();

  await vcctl('option', 'fog', 'on');
  await vcctl('draw', 'layer', '--id', '10', 'Routes');
  await vcctl('draw', 'line3d', '--id', '11', '--from', '-450,-300,0', '--to', '300,250,0', '--color', 'yellow', '--thickness', '3', '--arrow', 'end');
  await vcctl('add-to-layer', '11', '10');
  await vcctl('draw', 'text2d', '--id', '14', '--at', '0.05,0.95', '--color', 'white', 'Orbiting 1:1:1');
  await vcctl('draw', 'text3d', '--id', '15', '--attach', '300,250,0', '--color', 'white', 'Depot');
  await vcctl('draw', 'cuboid', '--id', '16', '--attach', '-200,100,0', '--size', '40,40,10', '--color', 'purple');
  await vcctl('draw', 'cylinder', '--id', '18', '--attach', '-450,250,0', '--to', 'object:11@50', '--diameters', '20,20', '--color', 'blue');
  await vcctl('draw', 'area', '--id', '17', '--color', 'green', '0,0,0', '200,0,0', '200,-150,0', '0,-150,0');
  await vcctl('draw', 'template', '--id', '20', '--name', 'Status', '1:Speed:number', '2:Fuel:bar:0:100');
  await vcctl('draw', 'panel', '--id', '21', '--template', '20', '--attach', '300,250,0', '--color', 'orange');
  await vcctl('value', '21', '1', '--number', '42');
  await vcctl('value', '21', '2', '--number', '80');
  // A layer that is hidden, with a drawing in it: kept by the viewer, drawn nowhere.
  await vcctl('draw', 'layer', '--id', '40', 'Hidden');
  await vcctl('draw', 'line3d', '--id', '41', '--from', '0,0,0', '--to', '-300,400,0', '--color', 'red');
  await vcctl('add-to-layer', '41', '40');
  await vcctl('hide', '40');
  await vcctl('value', '21', '1', '--number', '88');

  await until(page, 'the panel shows its latest values', () => {
    const row = (a) => document.querySelector(`#panel-21 tr[data-attribute="${a}"] .value`);
    return row(1) && row(1).textContent === '88' && row(2).textContent === '80' &&
      document.querySelector('#panel-21 h3').textContent.startsWith('Status');
  });
  const present = await page.evaluate(() => {
    const names = new Set(window.vcLive.scene3d.children.map((c) => c.name));
    const svg = (id) => !!document.querySelector(`#picture svg g#object-${id}`);
    return { in3D: [11, 15, 16, 17, 18, 21].filter((id) => names.has(`object-${id}`)),
      inSvg: [11, 14, 15, 16, 17, 21].filter(svg), hidden3D: names.has('object-41'), hiddenSvg: svg(41),
      listed41: document.getElementById('drawing-41')?.dataset.visible,
      layer: document.getElementById('layer-40')?.className,
      fog: document.querySelector('#settings tr[data-setting="fog"] td:last-child')?.textContent };
  });
  check('the 3D view holds every visible 3D drawing by id', present.in3D.length === 6, present.in3D);
  check('the overlay and plan hold every visible drawing by id', present.inSvg.length === 6, present.inSvg);
  check('a drawing in a hidden layer is drawn in neither view', !present.hidden3D && !present.hiddenSvg, present);
  check('it is listed as kept but not visible, its layer as hidden', present.listed41 === 'false' && present.layer === 'hidden', present);
  check('the settings show what the options PDU changed', present.fog === 'on', present.fog);

  await until(page, 'the command list shows time, sender, PDU name and summary', () => {
    const items = [...document.querySelectorAll('#commands li')];
    const last = items[items.length - 1];
    return items.length >= 19 && /^\d\d:\d\d:\d\d\.\d{3}$/.test(last.querySelector('.time').textContent) &&
      last.querySelector('.sender').textContent === 'vcctl' &&
      last.querySelector('.pdu').textContent === 'DtVdcAttributeUpdate' &&
      last.querySelector('.summary').textContent === 'draw value 21/1 x=88 y=0' &&
      items.some((i) => i.querySelector('.pdu').textContent === 'DtVcOrbit');
  });

  // A pivot: the view through the eyepoint is 1400 m from the point, looking at it.
  await vcctl('pivot', '--point', '0,0,0', '--radius', '1400', '--heading', '0.4', '--pitch', '-0.7');
  await until(page, 'the view through the eyepoint looks at the pivot from its radius', () => {
    const { placed, eye, forward } = window.vcLive.look();
    const distance = Math.hypot(...eye);
    const towards = -(eye[0] * forward[0] + eye[1] * forward[1] + eye[2] * forward[2]) / distance;
    return placed && Math.abs(distance - 1400) < 0.01 && towards > 1 - 1e-6;
  });
  await vcctl('show', '40');
  await until(page, 'showing the layer draws its drawing again', () =>
    window.vcLive.scene3d.getObjectByName('object-41') && document.querySelector('#picture svg g#object-41'));

  check('the page raised no error and every file it asked for was served', errors.length === 0, errors);
  await keepScreenshot(page, screenshot);
});
