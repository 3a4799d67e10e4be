// The live page of vcviewer: one event stream brings a snapshot of the viewer's state on
// every change, and a few a second while entities move; each snapshot is drawn whole
// (panels, lists, the SVG picture the viewer draws itself, and the 3D views of view3d.js
// built from the same description of the scene).
'use strict';

const live = { snapshot: null, received: 0, scene3d: null, view, look, toWorld };
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

// A drawing hung on an entity says which one it follows, or why it waits.
function anchorNote(d) {
  return d.anchors.map((a) => a.problem || (a.on ? `on ${a.on}` : '')).filter(Boolean).join('; ');
}

function showDrawings(s) {
  replace($('drawings'), s.drawings.map((d) => {
    const note = anchorNote(d);
    const waiting = d.anchors.some((a) => a.kind !== 'none' && a.at === null);
    return element('tr',
      { id: `drawing-${d.id}`, class: d.visible ? '' : 'hidden', 'data-visible': String(d.visible), 'data-note': note },
      element('td', {}, d.id), element('td', {}, d.type), element('td', {}, d.text),
      element('td', { class: waiting ? 'waiting' : 'muted' }, note));
  }));
}

function showPicture(s) {
  // The viewer's own SVG, drawn by the same code that writes its SVG file.
  $('picture').innerHTML = s.svg.replace(/^<\?xml[^>]*>\s*/, '');
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
  // Snapshots also come while entities move; the delay is a command's, measured once,
  // and only for a command that came while the page was open.
  const last = s.commands[s.commands.length - 1];
  if (last && live.shownRevision !== undefined && s.revision !== live.shownRevision) $('latency').textContent = `last command shown ${Math.max(0, Date.now() - last.time * 1000).toFixed(0)} ms after it arrived`;
  live.shownRevision = s.revision;
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
