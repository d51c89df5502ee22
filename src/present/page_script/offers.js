// What the program asks of the page, and tells it.

// Where a menu of the current row belongs, from the view's corner.
function menuPlace() {
  if (current < 0) return [0, 0];
  const box = rows[current].element.getBoundingClientRect();
  return [Math.max(0, box.left) + 24, Math.min(Math.max(0, box.bottom), innerHeight)];
}

// The link on which the keyboard stands, if it does, and behind it the chosen messages.
function toOpen() {
  const link = document.activeElement;
  const isMeant = link instanceof HTMLAnchorElement && link.matches(':focus-visible');
  return [isMeant ? link.href : '', ...chosenIds()];
}

window.vorn = {
  count: () => rows.length,
  step,
  goTo: (index, extend) => goTo(there().at(index), extend),
  // For who comes with the keyboard: one row is current.
  enter: () => { if (current < 0) step(1, false); },
  goToMessage,
  // Where the user has gone on the document before this one.
  follow: id => { if (id !== idAt(current) && !gone.has(id) && placeOf(id) >= 0) goToMessage(id); },
  toggle: () => toggle(current),
  all: chooseAll,
  unchoose,
  deselect: () => { deselect(); tell('row', -1); },
  deselectUnseen: () => { if (current < 0 || !isInSight(rows[current])) vorn.deselect(); },
  chosen: chosenIds,
  toOpen,
  take,
  remove,
  giveBack,
  // The message that is read, though others may be chosen besides.
  current: () => current < 0 ? [...chosen][0] || '' : idAt(current),
  menuPlace,
  links: () => allOf(document, 'a[href], area[href]').map(
      link => [(link.innerText || '').trim() || link.href, link.href]),
  state,
  restore: restoreOnce,
  replace,
};

// Once all files are read.
function begin() {
  attend();
  if (window.vornPlace) vorn.restore(...window.vornPlace);
}
