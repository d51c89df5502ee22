// What the user does with the pointer.

// A click there changes them, and the row that is read or those that are chosen stay.
function isOnMarks(event) {
  return event.button === 0 && !event.ctrlKey && !event.shiftKey && event.target.closest('td.marks') !== null;
}

let marked = '';  // the message whose marks were clicked last

// Each click turns them, also the second of two quick ones, unless another row has come there.
function clickMarks(index, isQuick) {
  if (isQuick && idAt(index) !== marked) return;
  marked = idAt(index);
  tell('marks', index);
}

function goToClicked(index) {
  goTo(index, false);
  clicked = index;
}

listen('mousedown', event => {
  const index = rowAt(event.target);
  if (index < 0 || isOnMarks(event)) return;
  if (event.button === 0 && event.ctrlKey) {
    toggle(index, true);  // the row that was clicked before is meant as well
  } else if (event.button === 0 && event.shiftKey) {
    goTo(index, true);
    event.preventDefault();
  } else if (!chosen.has(idAt(index))) {
    goToClicked(index);
  } else {
    current = index;  // several may be about to be dragged
    show();
    tell('row', current);
  }
});

listen('click', event => {
  const index = rowAt(event.target);
  if (index < 0) return;
  if (isOnMarks(event)) {
    clickMarks(index, event.detail > 1);
  } else if (event.ctrlKey || event.shiftKey) {
    event.preventDefault();
  } else if (event.button === 0 && chosen.size > 0) {
    goToClicked(index);  // they were not dragged
  }
});

listen('dblclick', event => {
  if (isOnMarks(event)) return;
  if (event.button === 0 && rowAt(event.target) >= 0) tell('twice', rowAt(event.target));
});

listen('dragstart', event => {
  const index = rowAt(event.target);
  if (index < 0) return;
  const dragged = event.dataTransfer;
  if (!dragged.types.includes('text/uri-list')) {
    dragged.setData('text/uri-list', words.link + encodeURIComponent(idAt(index)));
  }
  showDragged(dragged, chosen.has(idAt(index)) ? chosen.size : 1);
});
