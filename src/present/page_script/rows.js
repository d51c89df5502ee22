// The rows of the page: for each message that it links to the first of those links, and the
// element around it, in which the row stands.

let rows = findRows(document);
let seen = new Set(rows.map(row => row.id));
const gone = new Set();  // of them, those that have left the folder

// The message that a link shows; nothing for any other link.
function messageOf(link) {
  const href = link.getAttribute('href');
  if (!href.toLowerCase().startsWith(words.link)) return null;
  try {
    return decodeURIComponent(href.slice(words.link.length));
  } catch (error) {
    return null;  // none of ours
  }
}

function findRows(document) {
  const found = new Map();
  for (const link of allOf(document, 'a[href]')) {
    const id = messageOf(link);
    if (id === null || found.has(id)) continue;
    found.set(id, {id, link, element: link.closest('tr, li, article') || link.parentElement || link});
  }
  const rows = [...found.values()];
  setApart(rows);
  for (const row of rows) row.html = row.element.outerHTML;
  return rows;
}

// An element that holds several rows, or not only rows, is none of them.
function setApart(rows) {
  const uses = new Map();
  for (const {element} of rows) uses.set(element, (uses.get(element) || 0) + 1);
  for (const row of rows) {
    if (uses.get(row.element) > 1 || row.element.localName === 'body') row.element = row.link;
  }
}

// The rows of another version of the page take the place of these.
function setRows(others) {
  rows = others;
  seen = new Set(rows.map(row => row.id));
  gone.clear();
}

// The rows that are still meant, by their places.
function there() {
  return [...rows.keys()].filter(index => !gone.has(rows[index].id));
}

function lastThere() {
  return there().pop() ?? -1;
}

function placeOf(id) {
  return rows.findIndex(row => row.id === id);
}

function idAt(index) {
  return index < 0 ? '' : rows[index].id;
}

function rowAt(target) {
  return rows.findIndex(row => row.element.contains(target) && !gone.has(row.id));
}
