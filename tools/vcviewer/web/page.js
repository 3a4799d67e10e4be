// The live page of vcviewer: one event stream brings a snapshot of the viewer's state on
// every change; each snapshot is drawn whole (panels, lists, the SVG picture the viewer
// draws itself, and a 3D view built here from the same description of the scene).
'use strict';

const view = {};
const live = { snapshot: null, received: 0, scene3d: null, view };
window.vcLive = live;  // for a person at the console, and for the page's tests

const $ = (id) => document.getElementById(id);

function element(tag, attrs, ...children) {
  const e = document.createElement(tag);
  for (const [k, v] of Object.entries(attrs || {})) {
    if (k === 'class') e.className = v;
    else e.setAttribute(k, v);
  }
  for (const c of children) e.append(c instanceof Node ? c : document.createTextNode(String(c)));
  return e;
}

function replace(container, children) {
  container.replaceChildren(...children);
}

function css(color) {
  const [r, g, b, a] = color;
  // A colour nobody set arrives as all zeros; shown opaque, as the SVG does.
  return `rgba(${r},${g},${b},${a === 0 ? 1 : a / 255})`;
}

// ------------------------------------------------------------------ panels and lists

// Radians as degrees with one decimal; a value the viewer could not give shows as "-".
function degrees(r) {
  return typeof r === 'number' ? (r * 180 / Math.PI).toFixed(1) : '-';
}

function showEye(s) {
  const e = s.eye;
  $('eye-mode').textContent = e.mode;
  const rows = [['parameters', e.describe], ['step', `${s.stepsize} m`], ['turn', `${s.turnrate} deg`]];
  const p = s.eyepoint;
  if (p && p.placed) {
    rows.push(['eyepoint', `${p.position.map((v) => (typeof v === 'number' ? v.toFixed(1) : '-')).join(', ')} m geocentric, ` +
      `heading ${degrees(p.heading)} pitch ${degrees(p.pitch)} roll ${degrees(p.roll)} deg` +
      (p.entity ? `, on ${p.entity}` : '')]);
  }
  if (p && p.problem) rows.push(['note', p.problem]);
  const n = s.entities;
  if (n) {
    rows.push(['entities', `${n.count}` + (n.faults ? `; ${n.faults} values refused, last: ${n.lastFault}` : '')]);
  }
  replace($('eye'), rows.map(([k, v]) => element('tr', {}, element('td', {}, k), element('td', {}, v))));
}

function showSettings(s) {
  const names = Object.keys(s.settings);
  replace($('settings'), names.length
    ? names.map((n) => element('tr', { 'data-setting': n }, element('td', {}, n), element('td', {}, s.settings[n])))
    : [element('tr', {}, element('td', {}, 'none changed'))]);
}

function showLayers(s) {
  replace($('layers'), s.layers.length
    ? s.layers.map((l) => element('li', { id: `layer-${l.id}`, class: l.hidden ? 'hidden' : '' },
      `${l.id} ${l.name} (${l.hidden ? 'hidden' : 'shown'})`))
    : [element('li', { class: 'muted' }, 'none')]);
}

function showPanels(s) {
  replace($('panels'), s.panels.map((p) => {
    const rows = p.rows.map((r) => {
      const value = element('td', { class: 'value' }, r.value);
      const cells = [element('td', {}, r.name)];
      if (r.fraction !== undefined) {
        const fill = element('span');
        fill.style.width = `${Math.round(r.fraction * 100)}%`;
        fill.style.background = css(p.color);
        cells.push(element('td', {}, element('span', { class: 'bar' }, fill)));
      } else {
        cells.push(element('td'));
      }
      cells.push(value);
      return element('tr', { 'data-attribute': r.id }, ...cells);
    });
    const box = element('div', { class: `panel${p.visible ? '' : ' hidden'}`, id: `panel-${p.id}` },
      element('h3', {}, `${p.title} `, element('span', { class: 'muted' }, `#${p.id}${p.visible ? '' : ' hidden'}`)),
      element('table', {}, ...rows));
    box.style.borderLeftColor = css(p.color);
    return box;
  }));
}

function clock(seconds) {
  const d = new Date(seconds * 1000);
  const two = (n) => String(n).padStart(2, '0');
  return `${two(d.getHours())}:${two(d.getMinutes())}:${two(d.getSeconds())}.${String(d.getMilliseconds()).padStart(3, '0')}`;
}

function showCommands(s) {
  const list = $('commands');
  // Keep the user's place when they scrolled up to read; follow the newest otherwise.
  const atEnd = list.scrollTop + list.clientHeight >= list.scrollHeight - 4;
  replace(list, s.commands.map((c) => element('li', { 'data-pdu': c.pdu },
    element('span', { class: 'time' }, clock(c.time)), ' ',
    element('span', { class: 'sender' }, c.sender || '-'), ' ',
    element('span', { class: 'pdu' }, c.pdu), ' ',
    element('span', { class: 'summary' }, c.summary))));
  if (atEnd) list.scrollTop = list.scrollHeight;
}

function showDrawings(s) {
  replace($('drawings'), s.drawings.map((d) => element('tr',
    { id: `drawing-${d.id}`, class: d.visible ? '' : 'hidden', 'data-visible': String(d.visible) },
    element('td', {}, d.id), element('td', {}, d.type), element('td', {}, d.text))));
}

function showPicture(s) {
  // The viewer's own SVG, drawn by the same code that writes its SVG file.
  $('picture').innerHTML = s.svg.replace(/^<\?xml[^>]*>\s*/, '');
}

// ------------------------------------------------------------------ 3D view



function setUp3D() {
  if (typeof THREE === 'undefined') {
    $('view3d').textContent = 'The 3D view needs three.js, which this vcviewer was built without.';
    return;
  }
  const box = $('view3d');
  view.renderer = new THREE.WebGLRenderer({ antialias: true, preserveDrawingBuffer: true });
  view.renderer.setPixelRatio(window.devicePixelRatio || 1);
  box.appendChild(view.renderer.domElement);
  view.scene = new THREE.Scene();
  view.scene.background = new THREE.Color(0x0f1215);
  view.camera = new THREE.PerspectiveCamera(50, 1, 0.5, 1e7);
  view.camera.up.set(0, 0, 1);  // z is up in the scene: x east, y north
  view.camera.position.set(-600, -900, 700);
  view.controls = new THREE.OrbitControls(view.camera, view.renderer.domElement);
  view.controls.enableDamping = false;
  view.grid = new THREE.GridHelper(2000, 20, 0x3a414a, 0x262b31);
  view.grid.rotation.x = Math.PI / 2;
  view.scene.add(view.grid);
  view.drawn = new THREE.Group();
  view.scene.add(view.drawn);
  live.scene3d = view.drawn;
  view.fitted = false;
  view.eyeKey = '';
  new ResizeObserver(resize).observe(box);
  resize();
  const loop = () => {
    view.controls.update();
    view.renderer.render(view.scene, view.camera);
    requestAnimationFrame(loop);
  };
  loop();
}

function resize() {
  const box = $('view3d');
  const w = Math.max(1, box.clientWidth), h = Math.max(1, box.clientHeight);
  view.renderer.setSize(w, h, false);
  view.camera.aspect = w / h;
  view.camera.updateProjectionMatrix();
}

const v3 = (a) => new THREE.Vector3(a[0] || 0, a[1] || 0, a[2] || 0);

function dispose(object) {
  object.traverse((o) => {
    if (o.geometry) o.geometry.dispose();
    if (o.material) {
      if (o.material.map) o.material.map.dispose();
      o.material.dispose();
    }
  });
}

// Where an anchor is, in metres; null when the scene does not know (entities have no
// position here). A drawing anchored to another sits that far along it.
function resolve(anchor, offset, byId, depth) {
  if (!anchor || depth > 8) return null;
  if (anchor.kind === 'position') return v3(anchor.position).add(v3(offset));
  if (anchor.kind !== 'object') return null;
  const other = byId.get(anchor.object);
  if (!other || other.is2D) return null;
  if (other.line && other.anchors[1].kind !== 'none') {
    const a = resolve(other.anchors[0], other.offset, byId, depth + 1);
    const b = resolve(other.anchors[1], other.offset, byId, depth + 1);
    return a && b ? a.lerp(b, anchor.percent / 100) : null;
  }
  if (other.points.length) {
    const sum = new THREE.Vector3();
    other.points.forEach((p) => sum.add(v3(p)));
    return sum.multiplyScalar(1 / other.points.length);
  }
  return resolve(other.anchors[0], other.offset, byId, depth + 1);
}

function colorOf(c) {
  return { color: new THREE.Color(c[0] / 255, c[1] / 255, c[2] / 255), opacity: c[3] === 0 ? 1 : c[3] / 255 };
}

function material(c, kind, extra) {
  const { color, opacity } = colorOf(c);
  return new kind(Object.assign({ color, transparent: opacity < 1, opacity }, extra || {}));
}

function lineSegments(d, a, b, group) {
  const parts = d.segments.length ? d.segments : [{ color: d.color, pattern: 0xffffffff, arrow: 0, percent: 100 }];
  const total = parts.reduce((n, s) => n + s.percent, 0);
  let t = 0;
  const length = a.distanceTo(b);
  for (const s of parts) {
    const share = total > 0 ? s.percent / total : 1 / parts.length;
    const from = a.clone().lerp(b, t), to = a.clone().lerp(b, t + share);
    t += share;
    const dashed = s.pattern !== 0xffffffff && s.pattern !== 0;
    const m = dashed ? material(s.color, THREE.LineDashedMaterial, { dashSize: length / 60, gapSize: length / 90 })
      : material(s.color, THREE.LineBasicMaterial);
    const line = new THREE.Line(new THREE.BufferGeometry().setFromPoints([from, to]), m);
    if (dashed) line.computeLineDistances();
    group.add(line);
    const head = Math.max(length / 25, 2);
    if (s.arrow & 1) group.add(arrowHead(from, to, head, s.color));
    if (s.arrow & 2) group.add(arrowHead(to, from, head, s.color));
  }
}

function arrowHead(from, to, size, c) {
  const cone = new THREE.Mesh(new THREE.ConeGeometry(size / 3, size, 12), material(c, THREE.MeshBasicMaterial));
  const dir = to.clone().sub(from).normalize();
  cone.quaternion.setFromUnitVectors(new THREE.Vector3(0, 1, 0), dir);
  cone.position.copy(to).addScaledVector(dir, -size / 2);
  return cone;
}

// Text as a sprite that always faces the camera, sized in metres to stay readable.
function sprite(lines, c, worldHeight, boxed) {
  const canvas = document.createElement('canvas');
  const ctx = canvas.getContext('2d');
  const px = 28;
  ctx.font = `${px}px sans-serif`;
  const width = Math.max(...lines.map((l) => ctx.measureText(l).width)) + 16;
  canvas.width = Math.ceil(width);
  canvas.height = Math.ceil(lines.length * px * 1.25 + 12);
  ctx.font = `${px}px sans-serif`;
  if (boxed) {
    ctx.fillStyle = 'rgba(16,20,24,0.9)';
    ctx.fillRect(0, 0, canvas.width, canvas.height);
    ctx.strokeStyle = css(c);
    ctx.lineWidth = 4;
    ctx.strokeRect(2, 2, canvas.width - 4, canvas.height - 4);
  }
  ctx.fillStyle = boxed ? '#ffffff' : css(c);
  ctx.textBaseline = 'top';
  lines.forEach((l, i) => ctx.fillText(l, 8, 6 + i * px * 1.25));
  const texture = new THREE.CanvasTexture(canvas);
  const s = new THREE.Sprite(new THREE.SpriteMaterial({ map: texture, depthTest: false }));
  const h = worldHeight * lines.length;
  s.scale.set(h * canvas.width / canvas.height, h, 1);
  s.center.set(0, 0);
  return s;
}

function polygon(points, c, fill) {
  const group = new THREE.Group();
  const pts = points.map(v3);
  if (fill && pts.length >= 3) {
    const index = [];
    for (let i = 1; i + 1 < pts.length; ++i) index.push(0, i, i + 1);
    const geometry = new THREE.BufferGeometry().setFromPoints(pts);
    geometry.setIndex(index);
    const m = material(c, THREE.MeshBasicMaterial, { side: THREE.DoubleSide });
    m.transparent = true;
    m.opacity *= 0.45;
    group.add(new THREE.Mesh(geometry, m));
  }
  group.add(new THREE.LineLoop(new THREE.BufferGeometry().setFromPoints(pts), material(c, THREE.LineBasicMaterial)));
  return group;
}

function solid(d, at, labelHeight) {
  const sx = Math.abs(d.scale[0]) || labelHeight, sy = Math.abs(d.scale[1]) || labelHeight, sz = Math.abs(d.scale[2]) || labelHeight;
  let geometry;
  if (d.type.includes('Cube') || d.type.includes('Cuboid')) geometry = new THREE.BoxGeometry(sx, sy, sz);
  else if (d.type.includes('Cylinder')) geometry = new THREE.CylinderGeometry(sx / 2, sx / 2, sz, 20).rotateX(Math.PI / 2);
  else geometry = new THREE.SphereGeometry(0.5, 20, 14).scale(sx, sy, sz);
  const mesh = d.fill ? new THREE.Mesh(geometry, material(d.color, THREE.MeshBasicMaterial, { transparent: true, opacity: 0.7 }))
    : new THREE.LineSegments(new THREE.EdgesGeometry(geometry), material(d.color, THREE.LineBasicMaterial));
  if (!d.fill) geometry.dispose();
  mesh.position.copy(at);
  mesh.rotation.set(d.rotation[2] || 0, d.rotation[1] || 0, -(d.rotation[0] || 0), 'ZYX');
  return mesh;
}

// A cylinder spanning two anchors: its axis runs from one to the other.
function tube(d, from, to) {
  const radius = Math.max(Math.abs(d.scale[0]), Math.abs(d.scale[1]), 1) / 2;
  const geometry = new THREE.CylinderGeometry(radius, radius, Math.max(from.distanceTo(to), 0.01), 20);
  const mesh = d.fill ? new THREE.Mesh(geometry, material(d.color, THREE.MeshBasicMaterial))
    : new THREE.LineSegments(new THREE.EdgesGeometry(geometry), material(d.color, THREE.LineBasicMaterial));
  if (!d.fill) geometry.dispose();
  const axis = to.clone().sub(from);
  if (axis.lengthSq() > 0) mesh.quaternion.setFromUnitVectors(new THREE.Vector3(0, 1, 0), axis.normalize());
  mesh.position.copy(from).lerp(to, 0.5);
  return mesh;
}

function build3D(s) {
  const byId = new Map(s.drawings.map((d) => [d.id, d]));
  const box = new THREE.Box3();
  for (const d of s.drawings) {
    if (d.is2D || !d.visible) continue;
    for (const a of d.anchors) if (a.kind === 'position') box.expandByPoint(v3(a.position).add(v3(d.offset)));
    for (const p of d.points) box.expandByPoint(v3(p));
  }
  const span = box.isEmpty() ? 1000 : Math.max(100, box.getSize(new THREE.Vector3()).length());
  const labelHeight = span / 28;
  const group = new THREE.Group();
  const panels = new Map(s.panels.map((p) => [p.id, p]));
  for (const d of s.drawings) {
    if (d.is2D || !d.visible) continue;
    const item = new THREE.Group();
    item.name = `object-${d.id}`;
    item.userData = { id: d.id, type: d.type };
    const at = resolve(d.anchors[0], d.offset, byId, 0);
    if (d.line) {
      const end = resolve(d.anchors[1], d.offset, byId, 0);
      if (!at || !end) continue;
      lineSegments(d, at, end, item);
    } else if (d.points.length >= 2) {
      item.add(polygon(d.points, d.color, d.fill || d.type.includes('Area')));
    } else if (!at) {
      continue;
    } else if (d.type.includes('Cylinder') && d.anchors[1].kind !== 'none') {
      const end = resolve(d.anchors[1], d.offset, byId, 0);
      if (!end) continue;
      item.add(tube(d, at, end));
    } else if (d.type.includes('Text')) {
      const label = sprite([d.text], d.color, labelHeight, false);
      label.position.copy(at);
      item.add(label);
    } else if (d.type === 'DtVdcAttributeGroup') {
      const p = panels.get(d.id);
      if (!p) continue;
      const board = sprite([p.title, ...p.rows.map((r) => `${r.name}: ${r.value}`)], d.color, labelHeight * 0.8, true);
      board.position.copy(at);
      item.add(board);
    } else {
      item.add(solid(d, at, labelHeight));
    }
    group.add(item);
  }
  return { group, box, span };
}

function eyeMarker(s) {
  const e = s.eye;
  const group = new THREE.Group();
  group.name = 'eyepoint';
  const yellow = new THREE.MeshBasicMaterial({ color: 0xffd84d });
  if (e.mode === 'absolute' || e.mode === 'track') {
    const cone = new THREE.Mesh(new THREE.ConeGeometry(6, 18, 12), yellow);
    cone.quaternion.setFromUnitVectors(new THREE.Vector3(0, 1, 0), eyeDirection(e));
    cone.position.copy(v3(e.location));
    group.add(cone);
  } else if (e.mode === 'pivot') {
    const ball = new THREE.Mesh(new THREE.SphereGeometry(5, 12, 8), yellow);
    ball.position.copy(v3(e.pivot));
    group.add(ball);
  } else {
    yellow.dispose();
  }
  return group;
}

// Heading clockwise from north, pitch up from the horizon, in radians as the PDUs carry them.
function eyeDirection(e) {
  const h = e.heading || 0, p = e.pitch || 0;
  return new THREE.Vector3(Math.sin(h) * Math.cos(p), Math.cos(h) * Math.cos(p), Math.sin(p));
}

// Follows the eyepoint when it is somewhere the scene knows, each time it changes: the
// user's orbiting in between is left alone.
function followEye(s) {
  const e = s.eye;
  const known = e.mode === 'absolute' || e.mode === 'track' || e.mode === 'pivot';
  const p = s.eyepoint || {};
  $('eye-note').textContent = known ? ''
    : p.problem ? `(${e.mode}: ${p.problem})`
      : `(${e.mode}: on ${p.entity || 'an entity'}; this view shows the scene's drawings, the eyepoint is in the list)`;
  const key = JSON.stringify([e.mode, e.location, e.heading, e.pitch, e.pivot, e.radius]);
  if (!known || key === view.eyeKey || !$('follow').checked) return known;
  view.eyeKey = key;
  if (e.mode === 'pivot') {
    const target = v3(e.pivot), r = Math.max(e.radius || 0, 10);
    view.controls.target.copy(target);
    view.camera.position.copy(target).addScaledVector(eyeDirection(e), -r);
  } else {
    const from = v3(e.location);
    view.camera.position.copy(from);
    view.controls.target.copy(from.clone().addScaledVector(eyeDirection(e), 100));
  }
  return true;
}

function show3D(s) {
  if (!view.scene) return;
  const { group, box, span } = build3D(s);
  group.add(eyeMarker(s));
  view.scene.remove(view.drawn);
  dispose(view.drawn);
  view.drawn = group;
  live.scene3d = group;
  view.scene.add(group);
  const grid = Math.pow(10, Math.ceil(Math.log10(span)));
  view.grid.scale.setScalar(grid / 2000);
  if (!box.isEmpty()) view.grid.position.set(box.getCenter(new THREE.Vector3()).x, box.getCenter(new THREE.Vector3()).y, 0);
  const followed = followEye(s);
  if (!followed && !view.fitted && !box.isEmpty()) {
    view.fitted = true;
    const centre = box.getCenter(new THREE.Vector3());
    view.controls.target.copy(centre);
    view.camera.position.copy(centre).add(new THREE.Vector3(-0.5, -0.9, 0.7).multiplyScalar(span));
  }
}

// ------------------------------------------------------------------ the stream

function show(s) {
  live.snapshot = s;
  live.received += 1;
  document.title = `vcviewer ${s.viewer}`;
  $('title').textContent = `vcviewer ${s.viewer}`;
  showEye(s);
  showSettings(s);
  showLayers(s);
  showPanels(s);
  showCommands(s);
  showDrawings(s);
  showPicture(s);
  show3D(s);
  const last = s.commands[s.commands.length - 1];
  if (last) $('latency').textContent = `last command shown ${Math.max(0, Date.now() - last.time * 1000).toFixed(0)} ms after it arrived`;
}

function connect() {
  const events = new EventSource('events');
  events.addEventListener('scene', (e) => show(JSON.parse(e.data)));
  events.onopen = () => { $('status').textContent = 'live'; $('status').className = 'status live'; };
  // The browser reconnects by itself; the next snapshot brings the page up to date.
  events.onerror = () => { $('status').textContent = 'reconnecting'; $('status').className = 'status'; };
}

setUp3D();
connect();
