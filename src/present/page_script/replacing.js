// Another version of the page takes the place of this one, row by row.

// What a document declares about itself counts only while it is read.
function declared(document) {
  const type = ask(document, 'doctype');
  return [type?.name, type?.publicId, type?.systemId, ...allOf(document, 'meta').map(meta => meta.outerHTML)].join();
}

// The elements in which rows stand; null when rows are no elements of their own.
function aroundRows(rows) {
  const elements = new Set(rows.map(row => row.element));
  const around = new Set();
  for (const {element} of rows) {
    for (let up = element.parentElement; up && !around.has(up); up = up.parentElement) around.add(up);
  }
  return elements.size === rows.length && ![...elements].some(element => around.has(element)) ? around : null;
}

function takeAttributes(element, other) {
  for (const {name} of [...element.attributes]) {
    if (!other.hasAttribute(name)) element.removeAttribute(name);
  }
  for (const {name, value} of other.attributes) {
    if (element.getAttribute(name) !== value) element.setAttribute(name, value);
  }
}

// Gives an element the children of another one that comes in its place. What says the same stays
// as it is; `now.ids` are the rows that are there by their messages, `next.rows` those of the other
// document by their elements.
function takeChildren(element, other, now, next) {
  takeAttributes(element, other);
  const children = [...element.childNodes];
  const wanted = wantedChildren(element, children, other, now, next);
  const stays = new Set(wanted);
  for (const child of children) if (!stays.has(child)) child.remove();
  let at = element.firstChild;
  for (const child of wanted) {
    if (child === at) at = at.nextSibling;
    else element.insertBefore(child, at);
  }
}

// For each child of the other element this one's own that can stand for it, or itself.
function wantedChildren(element, children, other, now, next) {
  const ways = children.filter(child => now.around.has(child));
  const plain = children.filter(child => !now.around.has(child) && !now.rows.has(child));
  return [...other.childNodes].map(child => {
    const row = next.rows.get(child);
    if (row) return wantedRow(element, child, row, now.ids.get(row.id));
    if (next.around.has(child)) {
      if (ways[0]?.nodeName !== child.nodeName) return child;
      takeChildren(ways[0], child, now, next);
      return ways.shift();
    }
    return plain[0]?.isEqualNode(child) ? plain.shift() : child;
  });
}

function wantedRow(element, child, row, same) {
  if (!same || same.html !== row.html || same.element.parentNode !== element) return child;
  return row.element = same.element;
}

// `page` are bytes in base64.
function readPage(page) {
  const bytes = Uint8Array.from(atob(page), letter => letter.charCodeAt(0));
  const text = new TextDecoder(ask(document, 'characterSet')).decode(bytes);
  return new DOMParser().parseFromString(text, 'text/html');
}

function takePage(bodies, other, now, next) {
  takeAttributes(allOf(document, 'html')[0], allOf(other, 'html')[0]);
  const heads = [document, other].map(document => allOf(document, 'html > head')[0]);
  if (!heads[0].isEqualNode(heads[1])) heads[0].replaceWith(heads[1]);
  takeChildren(bodies[0], bodies[1], now, next);
}

// The user is then at `place`, or where he is now. Gives the number of the other page's rows, or
// nothing where it has to be loaded.
function replace(page, place, staysAtEnd) {
  const other = readPage(page);
  const others = findRows(other);
  const now = {around: aroundRows(rows), rows: new Set(rows.map(row => row.element)),
               ids: new Map(rows.map(row => [row.id, row]))};
  const next = {around: aroundRows(others), rows: new Map(others.map(row => [row.element, row]))};
  const bodies = [document, other].map(document => allOf(document, 'html > body')[0]);
  if (!now.around || !next.around || !bodies[0] || !bodies[1]) return null;
  if (declared(document) !== declared(other)) return null;
  const kept = JSON.parse(place || state());
  const clickedId = rows[clicked]?.id;
  takePage(bodies, other, now, next);
  setRows(others);
  current = -1;  // a place among those of before, until it is restored
  clicked = placeOf(clickedId);
  attend();
  restore(kept, staysAtEnd);
  return rows.length;
}
