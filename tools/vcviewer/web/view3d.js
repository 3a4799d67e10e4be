// The live page's two 3D views of one scene: the view through the eyepoint (what the
// viewer itself would show) and an overview to orbit (drag) and zoom (wheel), which shows
// the eyepoint too. The federation's entities are drawn instanced, so thousands cost one
// draw call a view; between the viewer's snapshots they move on along their velocity, as
// do the eyepoint and what hangs on an entity, so the views stay smooth.
//
// Everything is drawn in metres east, north and up of the viewer's local origin (the
// snapshot's "frame"): geocentric metres are turned into it here, in doubles, so the
// graphics' single precision only ever sees small numbers and nothing jitters.
'use strict';

const view = {};

// Layers: 0 both views, 1 the overview only, 2 the view through the eyepoint only.
const OVERVIEW = 1, EYE_VIEW = 2;
// What the viewer stand-in assumes of the real viewer's lens (it frames groups in it too).
const EYE_FOV = 60;
// Entities in the view through the eyepoint are drawn at an aircraft's size.
const EYE_GLYPH = 15;
// Markings shown at once, and how many seconds of its past places each entity's trail
// shows.
const MAX_LABELS = 64, TRAIL_SECONDS = 3;
// Between snapshots things move on for at most this long, so a viewer that went quiet
// does not send them off the page (a busy one sends a snapshot at least every second).
const MAX_AHEAD = 2.0;

const world = {
  origin: [0, 0, 0], axes: [[1, 0, 0], [0, 1, 0], [0, 0, 1]], ground: 0, serial: -1,
  arrival: 0, count: 0, labels: [], index: new Map(), base: new Float64Array(0), velocity: new Float64Array(0),
  trails: new Map(), span: 1000,
};
const eye = { placed: false, key: '', time: 0, follows: -1, delta: null, drift: null, q: null, spin: null, spinSpan: 1 };

function toLocal(p) {
  const o = world.origin, a = world.axes;
  const d = [(p[0] || 0) - o[0], (p[1] || 0) - o[1], (p[2] || 0) - o[2]];
  return new THREE.Vector3(a[0][0] * d[0] + a[0][1] * d[1] + a[0][2] * d[2],
    a[1][0] * d[0] + a[1][1] * d[1] + a[1][2] * d[2], a[2][0] * d[0] + a[2][1] * d[1] + a[2][2] * d[2]);
}

// A direction (no shift), geocentric to local.
function turn(v) {
  const a = world.axes;
  return new THREE.Vector3(a[0][0] * v[0] + a[0][1] * v[1] + a[0][2] * v[2],
    a[1][0] * v[0] + a[1][1] * v[1] + a[1][2] * v[2], a[2][0] * v[0] + a[2][1] * v[1] + a[2][2] * v[2]);
}

// A direction, local to geocentric.
function turnBack(v) {
  const a = world.axes;
  return [0, 1, 2].map((i) => a[0][i] * v.x + a[1][i] * v.y + a[2][i] * v.z);
}

// Local back to geocentric metres, for a script that checks the page against /scene.
function toWorld(v) {
  return turnBack(v).map((x, i) => world.origin[i] + x);
}

// The body's forward, right and down axes in local components, from psi, theta, phi (the
// geocentric Euler angles of the entity's Orientation: z, then y, then x).
function bodyAxes(o) {
  const [psi, theta, phi] = (o || [0, 0, 0]).map((x) => x || 0);
  const cp = Math.cos(psi), sp = Math.sin(psi), ct = Math.cos(theta), st = Math.sin(theta);
  const cf = Math.cos(phi), sf = Math.sin(phi);
  return [
    turn([ct * cp, ct * sp, -st]),
    turn([sf * st * cp - cf * sp, sf * st * sp + cf * cp, sf * ct]),
    turn([cf * st * cp + sf * sp, cf * st * sp - sf * cp, cf * ct]),
  ];
}

// A camera looks along its -z with +y up: forward, and down turned over.
function cameraQuaternion(o) {
  const [forward, right, down] = bodyAxes(o);
  const m = new THREE.Matrix4().makeBasis(right, down.clone().negate(), forward.clone().negate());
  return new THREE.Quaternion().setFromRotationMatrix(m);
}

// ------------------------------------------------------------------ set-up

function makeRenderer(box, clear) {
  const renderer = new THREE.WebGLRenderer({ antialias: true, preserveDrawingBuffer: true });
  renderer.setPixelRatio(window.devicePixelRatio || 1);
  renderer.setClearColor(clear);
  box.appendChild(renderer.domElement);
  return renderer;
}

// A flat dart one metre long in body axes (x forward, y right, z down), with a fin up.
function dartGeometry() {
  const g = new THREE.BufferGeometry();
  g.setAttribute('position', new THREE.Float32BufferAttribute([
    0.5, 0, 0, -0.5, -0.45, 0, -0.25, 0, 0,
    0.5, 0, 0, -0.25, 0, 0, -0.5, 0.45, 0,
    0, 0, 0, -0.5, 0, -0.3, -0.5, 0, 0,
  ], 3));
  return g;
}

function setUp3D() {
  if (typeof THREE === 'undefined') {
    $('view3d').textContent = 'The 3D views need three.js, which this vcviewer was built without.';
    return;
  }
  view.scene = new THREE.Scene();
  view.renderer = makeRenderer($('view3d'), 0x0f1215);
  view.eyeRenderer = makeRenderer($('eyeview'), 0x17202a);

  view.camera = new THREE.PerspectiveCamera(50, 1, 0.5, 1e7);
  view.camera.up.set(0, 0, 1);  // z is up in the scene: x east, y north
  view.camera.position.set(-600, -900, 700);
  view.camera.layers.enable(OVERVIEW);
  view.controls = new THREE.OrbitControls(view.camera, view.renderer.domElement);
  view.controls.enableDamping = false;

  view.eyeCamera = new THREE.PerspectiveCamera(EYE_FOV, 1, 0.5, 2e6);
  view.eyeCamera.layers.enable(EYE_VIEW);

  view.grid = new THREE.GridHelper(2000, 20, 0x3a414a, 0x262b31);
  view.grid.rotation.x = Math.PI / 2;
  view.grid.layers.set(OVERVIEW);
  view.scene.add(view.grid);
  // The ground the eye sees: a 40 km square in 1 km cells under the origin.
  view.ground = new THREE.GridHelper(40000, 40, 0x4b5a46, 0x323d30);
  view.ground.rotation.x = Math.PI / 2;
  view.ground.layers.set(EYE_VIEW);
  view.scene.add(view.ground);

  view.drawn = new THREE.Group();
  view.scene.add(view.drawn);
  live.scene3d = view.drawn;
  view.movers = [];

  view.dart = dartGeometry();
  view.entityMaterial = new THREE.MeshBasicMaterial({ color: 0x8fd3ff, side: THREE.DoubleSide });
  view.capacity = 0;
  view.trail = new THREE.LineSegments(new THREE.BufferGeometry(),
    new THREE.LineBasicMaterial({ color: 0x8fd3ff, transparent: true, opacity: 0.45 }));
  view.trail.frustumCulled = false;
  view.scene.add(view.trail);
  view.highlight = new THREE.Mesh(new THREE.RingGeometry(0.9, 1, 32),
    new THREE.MeshBasicMaterial({ color: 0xffd84d, side: THREE.DoubleSide }));
  view.highlight.layers.set(OVERVIEW);
  view.highlight.visible = false;
  view.scene.add(view.highlight);
  view.labels = [];
  view.textures = new Map();
  for (let i = 0; i < MAX_LABELS; ++i) {
    const s = new THREE.Sprite(new THREE.SpriteMaterial({ depthTest: false, sizeAttenuation: false }));
    s.visible = false;
    s.center.set(-0.08, -0.25);
    view.labels.push(s);
    view.scene.add(s);
  }
  view.eyeMarker = eyeMarker();
  view.scene.add(view.eyeMarker);

  view.fitted = -1;
  view.followAt = null;
  new ResizeObserver(resize).observe($('view3d'));
  new ResizeObserver(resize).observe($('eyeview'));
  resize();
  const loop = () => {
    frame();
    view.controls.update();
    view.renderer.render(view.scene, view.camera);
    view.eyeRenderer.render(view.scene, view.eyeCamera);
    requestAnimationFrame(loop);
  };
  loop();
}

function resize() {
  for (const [box, renderer, camera] of [[$('view3d'), view.renderer, view.camera], [$('eyeview'), view.eyeRenderer, view.eyeCamera]]) {
    const w = Math.max(1, box.clientWidth), h = Math.max(1, box.clientHeight);
    renderer.setSize(w, h, false);
    camera.aspect = w / h;
    camera.updateProjectionMatrix();
  }
}

// The eyepoint in the overview: a pyramid of sight one unit deep, scaled to the scene.
function eyeMarker() {
  const t = Math.tan(EYE_FOV * Math.PI / 360), w = t * 1.4;
  const corners = [[-w, -t], [w, -t], [w, t], [-w, t]].map(([x, y]) => [x, y, -1]);
  const v = [];
  corners.forEach((c, i) => v.push(0, 0, 0, ...c, ...c, ...corners[(i + 1) % 4]));
  v.push(0, 0, 0, 0, 0, -2.5);  // the line of sight
  const g = new THREE.BufferGeometry();
  g.setAttribute('position', new THREE.Float32BufferAttribute(v, 3));
  const marker = new THREE.LineSegments(g, new THREE.LineBasicMaterial({ color: 0xffd84d }));
  marker.name = 'eyepoint';
  marker.layers.set(OVERVIEW);
  marker.visible = false;
  return marker;
}

// ------------------------------------------------------------------ entities

function instanced(layer, capacity) {
  const mesh = new THREE.InstancedMesh(view.dart, view.entityMaterial, capacity);
  mesh.frustumCulled = false;  // the instances are anywhere, not around the mesh's origin
  mesh.layers.set(layer);
  mesh.count = 0;
  view.scene.add(mesh);
  return mesh;
}

function reserve(n) {
  if (view.glyphs && n <= view.capacity) return;
  for (const mesh of [view.glyphs, view.eyeGlyphs]) if (mesh) view.scene.remove(mesh);
  view.capacity = Math.max(n, view.capacity * 2, 64);
  view.glyphs = instanced(OVERVIEW, view.capacity);
  view.eyeGlyphs = instanced(EYE_VIEW, view.capacity);
  const base = new Float64Array(view.capacity * 3), velocity = new Float64Array(view.capacity * 3);
  base.set(world.base);
  velocity.set(world.velocity);
  world.base = base;
  world.velocity = velocity;
}

// A texture of any size as it is: no mipmaps, so WebGL 1 need not resize it to a power of two.
function flat(texture) {
  texture.minFilter = THREE.LinearFilter;
  texture.generateMipmaps = false;
  return texture;
}

function labelTexture(text, color) {
  const key = `${color}|${text}`;
  let t = view.textures.get(key);
  if (t) return t;
  if (view.textures.size > 4 * MAX_LABELS) {
    for (const old of view.textures.values()) old.texture.dispose();
    view.textures.clear();
  }
  const canvas = document.createElement('canvas');
  const ctx = canvas.getContext('2d');
  ctx.font = '28px sans-serif';
  canvas.width = Math.ceil(ctx.measureText(text).width) + 8;
  canvas.height = 36;
  ctx.font = '28px sans-serif';
  ctx.fillStyle = color;
  ctx.textBaseline = 'top';
  ctx.fillText(text, 4, 4);
  t = { texture: flat(new THREE.CanvasTexture(canvas)), aspect: canvas.width / canvas.height };
  view.textures.set(key, t);
  return t;
}

// Takes the snapshot's entities: where each is and how fast it goes in local metres, and
// its body axes, which hold until the next snapshot.
function takeEntities(s) {
  const list = s.entities ? s.entities.list.filter((e) => Array.isArray(e.position)) : [];
  reserve(list.length);
  world.count = list.length;
  world.index = new Map();
  const box = new THREE.Box3();
  list.forEach((e, i) => {
    const p = toLocal(e.position), v = turn(e.velocity || [0, 0, 0]);
    world.base[i * 3] = p.x; world.base[i * 3 + 1] = p.y; world.base[i * 3 + 2] = p.z;
    world.velocity[i * 3] = v.x; world.velocity[i * 3 + 1] = v.y; world.velocity[i * 3 + 2] = v.z;
    world.index.set(e.id || e.instance, i);
    box.expandByPoint(p);
  });
  world.box = box;
  world.list = list;
  return box;
}

function setGlyphs(span) {
  const size = Math.max(8, span / 40);
  world.glyphSize = size;
  const at = [view.glyphs.instanceMatrix.array, view.eyeGlyphs.instanceMatrix.array];
  world.list.forEach((e, i) => {
    const axes = bodyAxes(e.orientation);
    [size, EYE_GLYPH].forEach((k, which) => {
      const m = at[which], o = i * 16;
      for (let c = 0; c < 3; ++c) {
        m[o + c * 4] = axes[c].x * k; m[o + c * 4 + 1] = axes[c].y * k; m[o + c * 4 + 2] = axes[c].z * k; m[o + c * 4 + 3] = 0;
      }
      m[o + 15] = 1;
    });
  });
  view.glyphs.count = view.eyeGlyphs.count = world.count;
}

// Where entity i is `dt` seconds after the snapshot, into `out`.
function entityAt(i, dt, out) {
  const b = world.base, v = world.velocity;
  return out.set(b[i * 3] + v[i * 3] * dt, b[i * 3 + 1] + v[i * 3 + 1] * dt, b[i * 3 + 2] + v[i * 3 + 2] * dt);
}

function moveEntities(dt) {
  const a = view.glyphs.instanceMatrix.array, b = view.eyeGlyphs.instanceMatrix.array;
  const base = world.base, v = world.velocity;
  for (let i = 0; i < world.count; ++i) {
    const o = i * 16 + 12;
    for (let c = 0; c < 3; ++c) a[o + c] = b[o + c] = base[i * 3 + c] + v[i * 3 + c] * dt;
  }
  view.glyphs.instanceMatrix.needsUpdate = true;
  view.eyeGlyphs.instanceMatrix.needsUpdate = true;
  for (const l of world.labels) entityAt(l.index, dt, l.sprite.position);
  if (view.highlight.visible) entityAt(eye.follows, dt, view.highlight.position);
}

// Trails: the entities' places at the snapshots of the last few seconds, kept by object
// as flat x, y, z, time runs (thousands of entities make no garbage), restarted when the
// frame moves.
function takeTrails(s) {
  if (world.trailSerial !== world.serial) world.trails.clear();
  world.trailSerial = world.serial;
  const b = world.base, since = s.time - TRAIL_SECONDS;
  const seen = new Set();
  let n = 0;
  world.list.forEach((e, i) => {
    seen.add(e.object);
    let t = world.trails.get(e.object);
    if (!t) world.trails.set(e.object, t = []);
    t.push(b[i * 3], b[i * 3 + 1], b[i * 3 + 2], s.time);
    let old = 0;
    while (old + 4 < t.length && t[old + 3] < since) old += 4;
    if (old) t.splice(0, old);
    n += t.length / 4 - 1;
  });
  for (const k of [...world.trails.keys()]) if (!seen.has(k)) world.trails.delete(k);
  const positions = new Float32Array(n * 6);
  let o = 0;
  for (const t of world.trails.values()) {
    for (let k = 4; k < t.length; k += 4) {
      positions[o++] = t[k - 4]; positions[o++] = t[k - 3]; positions[o++] = t[k - 2];
      positions[o++] = t[k]; positions[o++] = t[k + 1]; positions[o++] = t[k + 2];
    }
  }
  view.trail.geometry.dispose();
  view.trail.geometry = new THREE.BufferGeometry();
  view.trail.geometry.setAttribute('position', new THREE.BufferAttribute(positions, 3));
}

// Markings: those the eyepoint and the drawings follow first, then the others in order.
function takeLabels(s, wanted) {
  const order = [];
  const taken = new Set();
  const add = (i) => { if (i !== undefined && !taken.has(i) && order.length < MAX_LABELS) { taken.add(i); order.push(i); } };
  for (const label of wanted) add(world.index.get(label));
  for (let i = 0; i < world.count && order.length < MAX_LABELS; ++i) add(i);
  world.labels = order.map((index, k) => {
    const e = world.list[index];
    const sprite = view.labels[k];
    const followed = index === eye.follows;
    const t = labelTexture(e.marking || e.id || e.instance, followed ? '#ffd84d' : '#8fd3ff');
    sprite.material.map = t.texture;
    sprite.material.needsUpdate = true;
    sprite.scale.set(0.035 * t.aspect, 0.035, 1);
    sprite.visible = true;
    return { index, sprite };
  });
  for (let k = order.length; k < MAX_LABELS; ++k) view.labels[k].visible = false;
  return order.length;
}

// ------------------------------------------------------------------ the eyepoint

// Takes the snapshot's eyepoint. When it follows an entity it is kept as an offset from
// that entity, so that it moves on with it; how the offset and the orientation changed
// since the snapshot before carries them on too (an orbit turns, a track looks round).
function takeEye(s) {
  const p = s.eyepoint;
  if (!p || !p.placed || !Array.isArray(p.position)) {
    eye.placed = false;
    eye.key = '';
    return;
  }
  const follows = p.entity && world.index.has(p.entity) ? world.index.get(p.entity) : -1;
  const position = toLocal(p.position);
  const delta = follows >= 0 ? position.clone().sub(entityAt(follows, 0, new THREE.Vector3())) : position;
  const q = cameraQuaternion(p.orientation);
  const key = `${s.eye.mode}|${p.entity}|${world.serial}|${s.revision}`;
  const span = s.time - eye.time;
  if (eye.key === key && span > 0 && span < 2) {
    eye.drift = delta.clone().sub(eye.delta).divideScalar(span);
    eye.spin = q.clone().multiply(eye.q.clone().inverse());
    eye.spinSpan = span;
  } else {
    eye.drift = new THREE.Vector3();
    eye.spin = new THREE.Quaternion();
    eye.spinSpan = 1;
  }
  Object.assign(eye, { placed: true, key, time: s.time, follows, delta, q });
}

function moveEye(dt) {
  if (!eye.placed) return;
  const c = view.eyeCamera;
  c.position.copy(eye.delta).addScaledVector(eye.drift, dt);
  if (eye.follows >= 0) c.position.add(entityAt(eye.follows, dt, new THREE.Vector3()));
  const spin = new THREE.Quaternion().slerp(eye.spin, Math.min(dt / eye.spinSpan, 5));
  c.quaternion.copy(spin.multiply(eye.q));
  view.eyeMarker.position.copy(c.position);
  view.eyeMarker.quaternion.copy(c.quaternion);
}

// ------------------------------------------------------------------ drawings

function dispose(object) {
  object.traverse((o) => {
    if (o.geometry) o.geometry.dispose();
    if (o.material) {
      if (o.material.map) o.material.map.dispose();
      o.material.dispose();
    }
  });
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
  const texture = flat(new THREE.CanvasTexture(canvas));
  const s = new THREE.Sprite(new THREE.SpriteMaterial({ map: texture, depthTest: false }));
  const h = worldHeight * lines.length;
  s.scale.set(h * canvas.width / canvas.height, h, 1);
  s.center.set(0, 0);
  return s;
}

function polygon(points, c, fill) {
  const group = new THREE.Group();
  const pts = points.map(toLocal);
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

// Where a drawing's end is, in local metres, as the viewer placed it; null when it has no
// place (an entity not known, a drawing not there).
function endOf(d, i) {
  const a = d.anchors[i];
  return a && Array.isArray(a.at) ? toLocal(a.at) : null;
}

// The entity an end hangs on, as an index into this snapshot's entities, or -1.
function hangsOn(d, i) {
  const a = d.anchors[i];
  return a && a.on && world.index.has(a.on) ? world.index.get(a.on) : -1;
}

function build3D(s) {
  const box = world.box.clone();
  for (const d of s.drawings) {
    if (d.is2D || !d.visible) continue;
    for (const i of [0, 1]) { const p = endOf(d, i); if (p) box.expandByPoint(p); }
    for (const p of d.points) box.expandByPoint(toLocal(p));
  }
  const span = box.isEmpty() ? 1000 : Math.max(100, box.getSize(new THREE.Vector3()).length());
  const labelHeight = span / 28;
  const group = new THREE.Group();
  const movers = [];
  const panels = new Map(s.panels.map((p) => [p.id, p]));
  for (const d of s.drawings) {
    if (d.is2D || !d.visible) continue;
    const item = new THREE.Group();
    item.name = `object-${d.id}`;
    item.userData = { id: d.id, type: d.type };
    const at = endOf(d, 0);
    let redraw = null;  // how to draw it again between two ends that move apart
    if (d.line) {
      const end = endOf(d, 1);
      if (!at || !end) continue;
      lineSegments(d, at, end, item);
      redraw = (a, b) => lineSegments(d, a, b, item);
    } else if (d.points.length >= 2) {
      item.add(polygon(d.points, d.color, d.fill || d.type.includes('Area')));
    } else if (!at) {
      continue;
    } else if (d.type.includes('Cylinder') && d.anchors[1].kind !== 'none') {
      const end = endOf(d, 1);
      if (!end) continue;
      item.add(tube(d, at, end));
      redraw = (a, b) => item.add(tube(d, a, b));
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
    const on = [hangsOn(d, 0), hangsOn(d, 1)];
    if (on[0] >= 0 || on[1] >= 0) movers.push({ item, on, ends: [at, endOf(d, 1)], redraw });
    group.add(item);
  }
  return { group, box, span, movers };
}

// What hangs on an entity moves on with it: the whole drawing when its ends move alike,
// else drawn again between where its two ends are now.
function moveDrawings(dt) {
  const now = new THREE.Vector3(), then = new THREE.Vector3();
  const shift = (i) => (i < 0 ? new THREE.Vector3() : entityAt(i, dt, now.clone()).sub(entityAt(i, 0, then)));
  for (const m of view.movers) {
    const a = shift(m.on[0]), b = shift(m.on[1]);
    if (!m.redraw || !m.ends[1] || a.distanceToSquared(b) < 1e-6) {
      m.item.position.copy(m.on[0] >= 0 ? a : b);
      continue;
    }
    for (const c of [...m.item.children]) {
      m.item.remove(c);
      dispose(c);
    }
    m.redraw(m.ends[0].clone().add(a), m.ends[1].clone().add(b));
  }
}

// ------------------------------------------------------------------ each snapshot, each frame

function takeFrame(s) {
  const f = s.frame || { origin: [0, 0, 0], axes: [[1, 0, 0], [0, 1, 0], [0, 0, 1]], ground: 0, serial: 0 };
  world.origin = f.origin;
  world.axes = f.axes;
  world.ground = f.ground || 0;
  world.serial = f.serial;
}

function show3D(s) {
  if (!view.scene) return;
  takeFrame(s);
  world.arrival = performance.now() / 1000;
  takeEntities(s);
  takeEye(s);
  const { group, box, span, movers } = build3D(s);
  setGlyphs(span);
  takeTrails(s);
  const wanted = [s.eyepoint && s.eyepoint.entity];
  for (const d of s.drawings) for (const a of d.anchors) if (a.on) wanted.push(a.on);
  const labelled = takeLabels(s, wanted.filter(Boolean));
  view.scene.remove(view.drawn);
  dispose(view.drawn);
  view.drawn = group;
  view.movers = movers;
  live.scene3d = group;
  view.scene.add(group);

  const grid = Math.pow(10, Math.ceil(Math.log10(span)));
  view.grid.scale.setScalar(grid / 2000);
  const centre = box.isEmpty() ? new THREE.Vector3() : box.getCenter(new THREE.Vector3());
  view.grid.position.set(centre.x, centre.y, world.ground);
  view.ground.position.set(0, 0, world.ground);
  view.highlight.visible = eye.follows >= 0;
  view.highlight.scale.setScalar(world.glyphSize * 1.2);
  view.eyeMarker.visible = eye.placed;
  view.eyeMarker.scale.setScalar(Math.max(20, span / 12));

  $('entity-count').textContent = world.count
    ? `showing ${world.count} entit${world.count === 1 ? 'y' : 'ies'}, ${labelled} with markings` : 'no entities';
  const p = s.eyepoint || {};
  $('eye-note').textContent = p.problem ? `(${s.eye.mode}: ${p.problem})`
    : eye.placed ? `(${s.eye.mode}${p.entity ? ` on ${p.entity}` : ''})` : '(not placed yet)';

  // The overview is fitted to what there is once per frame of reference; the user's
  // orbiting is left alone after that.
  if (view.fitted !== world.serial && !box.isEmpty()) {
    view.fitted = world.serial;
    if (eye.placed) box.expandByPoint(eye.delta.clone().add(eye.follows >= 0 ? entityAt(eye.follows, 0, new THREE.Vector3()) : new THREE.Vector3()));
    const c = box.getCenter(new THREE.Vector3());
    const size = Math.max(100, box.getSize(new THREE.Vector3()).length());
    view.controls.target.copy(c);
    view.camera.position.copy(c).add(new THREE.Vector3(-0.5, -0.9, 0.7).multiplyScalar(size));
    view.followAt = null;
  }
}

// Every frame: things move on from the last snapshot; the overview keeps the eyepoint
// where it was on screen while "follow" is ticked.
function frame() {
  const dt = Math.min(Math.max(performance.now() / 1000 - world.arrival, 0), MAX_AHEAD);
  view.frameDt = dt;
  if (view.glyphs) moveEntities(dt);
  moveEye(dt);
  moveDrawings(dt);
  if (!eye.placed || !$('follow').checked) {
    view.followAt = null;
    return;
  }
  // The first time, the overview turns to the eye; then it moves along with it.
  const at = view.eyeCamera.position;
  const step = at.clone().sub(view.followAt || view.controls.target);
  view.camera.position.add(step);
  view.controls.target.add(step);
  view.followAt = at.clone();
}

// For scripts and the page's tests: the eye camera and the entities where the views put
// them now (the next frame draws them there), in geocentric metres.
function look() {
  frame();
  const dt = view.frameDt;
  const entities = {};
  world.index.forEach((i, label) => { entities[label] = toWorld(entityAt(i, dt, new THREE.Vector3())); });
  const forward = new THREE.Vector3(0, 0, -1).applyQuaternion(view.eyeCamera.quaternion);
  return {
    placed: eye.placed, eye: toWorld(view.eyeCamera.position), follows: eye.follows >= 0 ? world.list[eye.follows].id || world.list[eye.follows].instance : '',
    forward: turnBack(forward), entities, shown: world.count,
  };
}
