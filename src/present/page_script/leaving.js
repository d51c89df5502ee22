// Messages leave the folder, and may come back.

// The next row, or else the last one, takes the place of a current one that goes.
function remove(ids) {
  for (const id of ids) {
    if (!seen.has(id)) continue;
    gone.add(id);
    chosen.delete(id);
  }
  if (anchor >= 0 && gone.has(idAt(anchor))) anchor = -1;
  if (current < 0 || !gone.has(idAt(current))) return show();
  const next = there().find(index => index > current);
  endTaken = next === undefined;
  current = next ?? lastThere();
  show();
  if (current >= 0) reveal('nearest');
  tell('row', current);
}

// The chosen messages, which leave with this: what is asked next is not told them again. False
// where the page's last row was taken: the current one is a row that the user has passed, and not
// meant until it is known what follows.
function take() {
  if (endTaken && chosen.size === 0) return false;
  const ids = chosenIds();
  remove(ids);
  return ids;
}

// What was taken stays after all.
function giveBack(ids) {
  const back = ids.filter(id => seen.has(id));
  if (back.length === 0) return;
  back.forEach(id => gone.delete(id));
  goTo(placeOf(back[0]), false);
  if (back.length > 1) chosen = new Set(back);
  show();
}
