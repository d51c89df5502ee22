// How a row shows that it is current, chosen or about to go.

{
  const style = newElement('style');
  style.textContent = `
@media screen {
  .vorn-chosen { background: rgba(64,128,255,.25) !important; }
  .vorn-current { outline: 2px solid rgb(64,128,255); outline-offset: -2px; }
  /* What has left the folder, until the page is made anew. */
  .vorn-gone { opacity: .4 !important; text-decoration: line-through !important; pointer-events: none !important; }
  /* One long subject that may not be broken pushes nothing out of the window. */
  nobr a[href^="${words.link}" i] { display: inline-block; overflow: hidden; vertical-align: bottom;
    text-overflow: ellipsis; max-width: max(20em, calc(100vw - 36em)); }
}`;
  addToPage(style);
}

let toldChosen = 0;

function show() {
  rows.forEach((row, index) => {
    row.element.classList.toggle('vorn-current', index === current);
    row.element.classList.toggle('vorn-chosen', chosen.has(row.id));
    row.element.classList.toggle('vorn-gone', gone.has(row.id));
    // The keys go from row to row; Tab stops at the current one's links alone.
    for (const link of row.links) link.tabIndex = index === current ? 0 : -1;
  });
  look();
  if (chosen.size !== toldChosen) say('chosen', toldChosen = chosen.size);
}

// New rows, which may be taken with the pointer by any of their places, where the engine itself
// only moves links.
function attend() {
  for (const row of rows) {
    row.links = [...row.element.querySelectorAll('a[href]')];
    row.element.draggable = true;
  }
  show();
}

// What is dragged, beside the pointer, where the row, or its link, would lie over what it is
// dropped on.
function showDragged(dragged, count) {
  const label = newElement('div');
  label.textContent = words.messages.replace('%1', count);
  label.style.cssText = 'position: fixed; top: 0; left: -999px; padding: 2px 8px; font: 13px sans-serif;' +
      ' color: white; background: rgb(48,96,192); border-radius: 4px; white-space: nowrap';
  addToPage(label);
  dragged.setDragImage(label, -16, -4);
  setTimeout(() => label.remove());  // it is drawn before that
}
