// What of the page the user sees. Nobody sees it while its height is none, as behind another tab:
// the last one counts.

let height = innerHeight;
let reveals = '';  // how the current row comes into sight when somebody sees the page
// As the window was before it changed its size:
let isSeen = false;  // the current row
let first = null;  // the first row in sight, and where it stood
let wasAtEnd = false;

function isAtEnd() {
  return height + scrollY >= document.documentElement.scrollHeight - 2;
}

function topOf(row) {
  return row.element.getBoundingClientRect().top;
}

// A row that was scrolled into sight may lie a part of a dot outside.
function isInSight(row) {
  return topOf(row) >= -1 && row.element.getBoundingClientRect().bottom <= height + 1;
}

// Scrolls to the current row; `block` says how, as for `scrollIntoView`.
function reveal(block) {
  if (innerHeight === 0) reveals = block;
  else rows[current].element.scrollIntoView({block});
  look();
}

function look() {
  if (innerHeight === 0) return;
  isSeen = current >= 0 && isInSight(rows[current]);
  const row = scrollY > 0 && rows.find(row => topOf(row) >= -1);
  first = row ? {id: row.id, top: topOf(row)} : null;
  wasAtEnd = scrollY > 0 && isAtEnd();
}

// Where the rows in sight stand, the current one first; where rows go, the next takes their place.
function inSight() {
  return there().filter(index => isInSight(rows[index]))
      .sort((a, b) => gone.size > 0 ? 0 : (b === current) - (a === current))
      .map(index => ({id: rows[index].id, top: topOf(rows[index])}));
}

// What has come above moves nothing that the user looks at; at the top he looks at what comes.
function holdInSight(state) {
  const held = (state.sight || []).find(place => seen.has(place.id));
  if (!held && current >= 0 && state.sight) return reveal('nearest');
  if (!held || (state.y === 0 && (current < 0 || isInSight(rows[current])))) return;
  scrollBy(0, topOf(rows[placeOf(held.id)]) - held.top);
}

// Another size of the window, in which rows may have another height, does not take the current row
// out of sight, or without one what is looked at.
function resized() {
  if (innerHeight === 0) return;
  const block = reveals || (isSeen ? 'nearest' : '');
  reveals = '';
  height = innerHeight;
  if (current >= 0 && block) reveal(block);
  else if (wasAtEnd) scrollTo(scrollX, document.documentElement.scrollHeight);
  else if (first && seen.has(first.id)) scrollBy(0, topOf(rows[placeOf(first.id)]) - first.top);
  look();
}

EventTarget.prototype.addEventListener.call(window, 'resize', resized);
listen('scroll', look);
