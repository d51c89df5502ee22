// Where the user is on the page, as text, and put back on another version of it.

let restored = '';

// The current row and those after it, one of which takes its place when it has gone.
function state() {
  const idsFrom = first => there().filter(index => index >= first).map(idAt);
  return JSON.stringify({
    next: current < 0 ? [] : idsFrom(current),
    anchor: idAt(anchor),
    endTaken,
    gap: gap < 0 ? null : idsFrom(gap),
    chosen: [...chosen],
    x: scrollX,
    y: scrollY,
    end: isAtEnd(),
    sight: inSight(),
  });
}

function restore(state, staysAtEnd) {
  const slidIn = restoreCurrent(state);
  anchor = placeOf(state.anchor);
  chosen = new Set(state.chosen.filter(id => seen.has(id)));
  toldChosen = -1;  // the page before this one may have had others
  show();
  restoreSight(state, state.end && staysAtEnd);
  look();
  tell(slidIn ? 'row' : gap < 0 ? 'kept' : 'left', current);
}

// Whether the next page's first row has come in the place of this one's last.
function restoreCurrent(state) {
  current = state.last ? lastThere() : placeOf(state.next[0]);
  // The user did not take it away himself: no other one is meant in its place.
  const hasLeft = current < 0 && state.next.length > 0 && !state.seen && !state.last;
  const followers = hasLeft ? state.next : current < 0 ? state.gap : null;
  const behind = followers?.find(id => seen.has(id));
  gap = !followers ? -1 : behind ? placeOf(behind) : rows.length;
  const slidIn = Boolean(state.endTaken) && current >= 0 && current + 1 < rows.length;
  if (slidIn) ++current;
  endTaken = false;
  return slidIn;
}

function restoreSight(state, stays) {
  if (state.seen) {
    if (current >= 0) reveal(isInSight(rows[current]) ? 'nearest' : 'center');
    return;
  }
  if (rows.length === 0) return scrollTo(0, 0);  // words, which are read from their beginning
  scrollTo(state.x, stays ? 1e9 : state.y);
  if (!stays) holdInSight(state);
  else if (current >= 0) reveal('nearest');
}

// Once: the user may have moved since.
function restoreOnce(text, staysAtEnd) {
  if (text !== restored) restore(JSON.parse(restored = text), staysAtEnd);
  return true;
}
