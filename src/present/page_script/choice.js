// One row is current, and several may be chosen.

let current = -1;
let anchor = -1;  // where a range begins
let gap = -1;  // the row before which the current one stood that has gone, or behind the last one
let endTaken = false;  // the page's last row was: the next page's first one may come in its place
let clicked = -1;  // the row that was clicked last, without a key
let chosen = new Set();

// The program hears what the page says.
function say(word, what) {
  console.info('vorn-' + word + ' ' + what);
}

// What became current, and how, or what was clicked.
function tell(word, index) {
  say(word, idAt(index));
}

// A screen reader says what has the focus. A row that is its link alone would be followed by Enter.
function focusRow(element) {
  if (element instanceof HTMLAnchorElement) {
    if (document.activeElement instanceof HTMLAnchorElement) document.activeElement.blur();
    return;
  }
  element.tabIndex = -1;
  element.focus({preventScroll: true});
}

function chooseRange() {
  const [from, to] = anchor < current ? [anchor, current] : [current, anchor];
  chosen = new Set(there().filter(index => index >= from && index <= to).map(idAt));
}

function goTo(index, extend) {
  if (index === undefined) return;
  gap = -1;
  endTaken = false;
  if (extend && anchor < 0) anchor = current < 0 ? index : current;
  current = index;
  focusRow(rows[current].element);
  if (extend) {
    chooseRange();
  } else {
    anchor = -1;
    chosen.clear();
  }
  show();
  reveal('nearest');
  tell('row', current);
}

// From no row at all to one that is in sight: at the end of a page the last one.
function step(by, extend) {
  const places = there();
  const from = places.indexOf(current);
  const to = from >= 0 ? from + by : gap >= 0 ? stepFromGap(places, by) : firstStep(places, by);
  goTo(places[Math.max(0, Math.min(places.length - 1, to))], extend);
}

function stepFromGap(places, by) {
  const behind = places.findIndex(index => index >= gap);
  return (behind < 0 ? places.length : behind) + by - (by > 0);
}

function firstStep(places, by) {
  if (by <= 0 || (scrollY > 0 && isAtEnd())) return places.length - 1;
  return Math.max(0, places.findIndex(index => topOf(rows[index]) >= 0));
}

// Takes a row to the chosen ones or away from them.
function toggle(index, addsCurrent) {
  if (index < 0) return;
  if (addsCurrent && chosen.size === 0 && clicked >= 0 && clicked === current && current !== index) {
    chosen.add(idAt(current));
  }
  current = anchor = index;
  endTaken = false;
  const id = idAt(index);
  if (!chosen.delete(id)) chosen.add(id);
  show();
  tell('row', current);
}

function chooseAll() {
  chosen = new Set(there().map(idAt));
  show();
}

// Whether there was a choice to be given up.
function unchoose() {
  const had = chosen.size > 0;
  chosen.clear();
  anchor = -1;
  show();
  return had;
}

function deselect() {
  current = anchor = -1;
  chosen.clear();
  show();
}

// Whether the page has the message; if not, no row of this one is meant.
function goToMessage(id) {
  const index = gone.has(id) ? -1 : placeOf(id);
  if (index >= 0) goTo(index, false);
  else deselect();
  return index >= 0;
}

// The chosen messages, or else the current one, in the page's order.
function chosenIds() {
  if (chosen.size > 0) return rows.map(row => row.id).filter(id => chosen.has(id));
  return current < 0 ? [] : [idAt(current)];
}
