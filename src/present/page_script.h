#pragma once

#include <QString>

#include "storage/ui.h"

namespace vorn {

/// A script that calls a function of `vorn`, below; it gives nothing where a page could not be
/// loaded and has no script.
inline QString OnPage(const QString& call) {
  return QStringLiteral("window.vorn && vorn.") + call;
}

/// The script with which the program itself follows the user on a folder's page. It runs in every
/// page once that is read, in a world apart from it, where scripts of the page, if it had any,
/// could not reach it. `vorn` offers moving among the rows, choosing several, and keeping all that
/// over a new version of the page, which takes the place of this one row by row.
inline constexpr char kPageScript[] = R"js(
(() => {
  if (window.vorn) return;
  // An element's name hides what the document offers under that name, so it is asked the long way.
  const listen = (kind, heard) => EventTarget.prototype.addEventListener.call(document, kind, heard, true);
  const all = selector => allOf(document, selector);
  const allOf = (document, selector) => [...Document.prototype.querySelectorAll.call(document, selector)];
  const ask = (document, name) => Object.getOwnPropertyDescriptor(Document.prototype, name).get.call(document);
  const findRows = document => {
    const found = new Map();
    for (const link of allOf(document, 'a[href]')) {
      const href = link.getAttribute('href');
      if (!/^preview:/i.test(href)) continue;
      let id = href.slice(8);
      try {
        id = decodeURIComponent(id);
      } catch (error) {
        continue;  // none of ours
      }
      if (found.has(id)) continue;
      found.set(id, {id, link, element: link.closest('tr, li, article') || link.parentElement || link});
    }
    const rows = [...found.values()];
    const uses = new Map();
    for (const {element} of rows) uses.set(element, (uses.get(element) || 0) + 1);
    for (const row of rows) {
      // The element may hold several, or not only rows.
      if (uses.get(row.element) > 1 || row.element.localName === 'body') row.element = row.link;
      row.html = row.element.outerHTML;
    }
    return rows;
  };
  let rows = findRows(document);
  let seen = new Set(rows.map(row => row.id));
  const style = Document.prototype.createElement.call(document, 'style');
  style.textContent = '@media screen { .vorn-chosen { background: rgba(64,128,255,.25) !important; }' +
      ' .vorn-current { outline: 2px solid rgb(64,128,255); outline-offset: -2px; }' +
      // What has left the folder, until the page is made anew.
      ' .vorn-gone { opacity: .4 !important; text-decoration: line-through !important;' +
      ' pointer-events: none !important; }' +
      // One long subject that may not be broken pushes nothing out of the window.
      ' nobr a[href^="preview:" i] { display: inline-block; overflow: hidden; vertical-align: bottom;' +
      ' text-overflow: ellipsis; max-width: max(20em, calc(100vw - 36em)); } }';
  all('html')[0].appendChild(style);

  let current = -1;
  let anchor = -1;  // where a range begins
  let gap = -1;  // the row before which the current one stood that has gone, or behind the last one
  let endTaken = false;  // the page's last row was: the next page's first one may come in its place
  let clicked = -1;  // the row that was clicked last, without a key
  let chosen = new Set();
  const gone = new Set();
  // The rows that are still meant, by their places.
  const there = () => [...rows.keys()].filter(index => !gone.has(rows[index].id));
  const lastThere = () => there().pop() ?? -1;
  let toldChosen = 0;
  let restored = '';
  const show = () => {
    rows.forEach((row, index) => {
      row.element.classList.toggle('vorn-current', index === current);
      row.element.classList.toggle('vorn-chosen', chosen.has(row.id));
      row.element.classList.toggle('vorn-gone', gone.has(row.id));
      // The keys go from row to row; Tab stops at the current one's links alone.
      for (const link of row.links) link.tabIndex = index === current ? 0 : -1;
    });
    if (chosen.size !== toldChosen) console.info('vorn-chosen ' + (toldChosen = chosen.size));
  };
  const chooseRange = () => {
    const [from, to] = anchor < current ? [anchor, current] : [current, anchor];
    chosen = new Set(there().filter(index => index >= from && index <= to).map(index => rows[index].id));
  };
  // The program hears what became current, and how, or what was clicked twice.
  const tell = (what, index) => console.info('vorn-' + what + ' ' + (index < 0 ? '' : rows[index].id));
  // A screen reader says what has the focus. A row that is its link alone would be followed by Enter.
  const focusRow = element => {
    if (element instanceof HTMLAnchorElement) {
      if (document.activeElement instanceof HTMLAnchorElement) document.activeElement.blur();
      return;
    }
    element.tabIndex = -1;
    element.focus({preventScroll: true});
  };
  const goTo = (index, extend) => {
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
  };
  const toggle = (index, addsCurrent) => {
    if (index < 0) return;
    if (addsCurrent && chosen.size === 0 && clicked >= 0 && clicked === current && current !== index) {
      chosen.add(rows[current].id);
    }
    current = anchor = index;
    endTaken = false;
    const id = rows[index].id;
    if (!chosen.delete(id)) chosen.add(id);
    show();
    tell('row', current);
  };
  const rowAt = target => rows.findIndex(row => row.element.contains(target) && !gone.has(row.id));
  // A click there changes them, and the row that is read or those that are chosen stay.
  const isOnMarks = event => event.button === 0 && !event.ctrlKey && !event.shiftKey &&
      event.target.closest('td.marks') !== null;
  const chosenIds = () => chosen.size > 0 ? rows.filter(row => chosen.has(row.id)).map(row => row.id)
                                          : current < 0 ? [] : [rows[current].id];
  // Nobody sees the page while its height is none, as behind another tab: the last one counts.
  let height = innerHeight;
  let reveals = '';  // how the current row comes into sight when somebody sees the page
  const deselect = () => { current = anchor = -1; chosen.clear(); show(); };
  const isAtEnd = () => height + scrollY >= document.documentElement.scrollHeight - 2;
  const topOf = row => row.element.getBoundingClientRect().top;
  // A row that was scrolled into sight may lie a part of a dot outside.
  const isInSight = row => topOf(row) >= -1 && row.element.getBoundingClientRect().bottom <= height + 1;
  const reveal = block => {
    if (innerHeight === 0) reveals = block;
    else rows[current].element.scrollIntoView({block});
  };
  // Where the rows in sight stand, the current one first; where rows go, the next takes their place.
  const inSight = () => there().filter(index => isInSight(rows[index]))
      .sort((a, b) => gone.size > 0 ? 0 : (b === current) - (a === current))
      .map(index => ({id: rows[index].id, top: topOf(rows[index])}));
  // What has come above moves nothing that the user looks at; at the top he looks at what comes.
  const holdInSight = state => {
    const held = (state.sight || []).find(place => seen.has(place.id));
    if (!held && current >= 0 && state.sight) return reveal('nearest');
    if (!held || (state.y === 0 && (current < 0 || isInSight(rows[current])))) return;
    scrollBy(0, topOf(rows.find(row => row.id === held.id)) - held.top);
  };
  // The next row, or else the last one, takes the place of a current one that goes.
  const remove = ids => {
    for (const id of ids) {
      if (!seen.has(id)) continue;
      gone.add(id);
      chosen.delete(id);
    }
    if (anchor >= 0 && gone.has(rows[anchor].id)) anchor = -1;
    if (current < 0 || !gone.has(rows[current].id)) return show();
    const next = there().find(index => index > current);
    endTaken = next === undefined;
    current = next ?? lastThere();
    show();
    if (current >= 0) reveal('nearest');
    tell('row', current);
  };

  listen('mousedown', event => {
    const index = rowAt(event.target);
    if (index < 0 || isOnMarks(event)) return;
    if (event.button === 0 && event.ctrlKey) {
      toggle(index, true);  // the row that was clicked before is meant as well
    } else if (event.button === 0 && event.shiftKey) {
      goTo(index, true);
      event.preventDefault();
    } else if (!chosen.has(rows[index].id)) {
      goTo(index, false);
      clicked = index;
    } else {
      current = index;  // several may be about to be dragged
      show();
      tell('row', current);
    }
  });
  const attend = () => {
    for (const row of rows) {
      row.links = [...row.element.querySelectorAll('a[href]')];
      // A row is taken by any of its places, where the engine itself only moves links.
      row.element.draggable = true;
    }
    show();
  };
  listen('dragstart', event => {
    const index = rowAt(event.target);
    if (index < 0) return;
    const dragged = event.dataTransfer;
    if (!dragged.types.includes('text/uri-list')) {
      dragged.setData('text/uri-list', 'preview:' + encodeURIComponent(rows[index].id));
    }
    // Beside the pointer, where the row, or its link, would lie over what it is dropped on.
    const label = Document.prototype.createElement.call(document, 'div');
    label.textContent = '%MESSAGES%'.replace('%1', chosen.has(rows[index].id) ? chosen.size : 1);
    label.style.cssText = 'position: fixed; top: 0; left: -999px; padding: 2px 8px; font: 13px sans-serif;' +
        ' color: white; background: rgb(48,96,192); border-radius: 4px; white-space: nowrap';
    all('html')[0].appendChild(label);
    dragged.setDragImage(label, -16, -4);
    setTimeout(() => label.remove());  // it is drawn before that
  });
  listen('dblclick', event => {
    if (isOnMarks(event)) return;
    if (event.button === 0 && rowAt(event.target) >= 0) tell('twice', rowAt(event.target));
  });
  listen('click', event => {
    const index = rowAt(event.target);
    if (index < 0) return;
    if (isOnMarks(event)) {
      if (event.detail === 1) tell('marks', index);  // who clicks twice means it once
    } else if (event.ctrlKey || event.shiftKey) {
      event.preventDefault();
    } else if (event.button === 0 && chosen.size > 0) {
      goTo(index, false);  // they were not dragged
      clicked = index;
    }
  });

  attend();

  // A smaller window does not take the current row out of sight.
  EventTarget.prototype.addEventListener.call(window, 'resize', () => {
    if (innerHeight === 0) return;
    const row = rows[current];
    if (row && !reveals && isInSight(row)) reveals = 'nearest';
    height = innerHeight;
    if (row && reveals) reveal(reveals);
    reveals = '';
  });

  const restore = (state, staysAtEnd) => {
    const place = id => rows.findIndex(row => row.id === id);
    current = state.last ? lastThere() : place(state.next[0]);
    // The user did not take it away himself: no other one is meant in its place.
    const hasLeft = current < 0 && state.next.length > 0 && !state.seen && !state.last;
    const followers = hasLeft ? state.next : current < 0 ? state.gap : null;
    const behind = followers?.find(id => seen.has(id));
    gap = !followers ? -1 : behind ? place(behind) : rows.length;
    const slidIn = Boolean(state.endTaken) && current >= 0 && current + 1 < rows.length;
    if (slidIn) ++current;
    endTaken = false;
    anchor = rows.findIndex(row => row.id === state.anchor);
    chosen = new Set(state.chosen.filter(id => seen.has(id)));
    toldChosen = -1;  // the page before this one may have had others
    show();
    if (!state.seen) {
      const stays = state.end && staysAtEnd;
      scrollTo(state.x, stays ? 1e9 : state.y);
      if (!stays) holdInSight(state);
      if (stays && current >= 0) reveal('nearest');
    } else if (current >= 0) {
      reveal(isInSight(rows[current]) ? 'nearest' : 'center');
    }
    tell(slidIn ? 'row' : gap < 0 ? 'kept' : 'left', current);
  };

  // What a document declares about itself counts only while it is read.
  const declared = document => {
    const type = ask(document, 'doctype');
    return [type?.name, type?.publicId, type?.systemId, ...allOf(document, 'meta').map(meta => meta.outerHTML)].join();
  };
  // The elements in which rows stand; null when rows are no elements of their own.
  const aroundRows = rows => {
    const elements = new Set(rows.map(row => row.element));
    const around = new Set();
    for (const {element} of rows) {
      for (let up = element.parentElement; up && !around.has(up); up = up.parentElement) around.add(up);
    }
    return elements.size === rows.length && ![...elements].some(element => around.has(element)) ? around : null;
  };
  const takeAttributes = (element, other) => {
    for (const {name} of [...element.attributes]) {
      if (!other.hasAttribute(name)) element.removeAttribute(name);
    }
    for (const {name, value} of other.attributes) {
      if (element.getAttribute(name) !== value) element.setAttribute(name, value);
    }
  };
  // Gives an element the children of another one that comes in its place. What says the same stays
  // as it is; `next.rows` are the rows of the other document, by their elements.
  const takeChildren = (element, other, now, next) => {
    takeAttributes(element, other);
    const children = [...element.childNodes];
    const ways = children.filter(child => now.around.has(child));
    const plain = children.filter(child => !now.around.has(child) && !now.rows.has(child));
    const wanted = [...other.childNodes].map(child => {
      const row = next.rows.get(child);
      if (row) {
        const same = now.ids.get(row.id);
        if (!same || same.html !== row.html || same.element.parentNode !== element) return child;
        return row.element = same.element;
      }
      if (next.around.has(child)) {
        if (ways[0]?.nodeName !== child.nodeName) return child;
        takeChildren(ways[0], child, now, next);
        return ways.shift();
      }
      return plain[0]?.isEqualNode(child) ? plain.shift() : child;
    });
    const stays = new Set(wanted);
    for (const child of children) if (!stays.has(child)) child.remove();
    let at = element.firstChild;
    for (const child of wanted) {
      if (child === at) at = at.nextSibling;
      else element.insertBefore(child, at);
    }
  };

  window.vorn = {
    count: () => rows.length,
    // From no row at all to one that is in sight: at the end of a page the last one.
    step: (by, extend) => {
      const places = there();
      const from = places.indexOf(current);
      const inSight = places.findIndex(index => rows[index].element.getBoundingClientRect().top >= 0);
      const first = scrollY > 0 && isAtEnd() ? places.length - 1 : Math.max(0, inSight);
      const behind = places.findIndex(index => index >= gap);
      const next = gap < 0 ? -1 : behind < 0 ? places.length : behind;
      const to = from >= 0 ? from + by : next >= 0 ? next + by - (by > 0) : by > 0 ? first : places.length - 1;
      goTo(places[Math.max(0, Math.min(places.length - 1, to))], extend);
    },
    goTo: (index, extend) => goTo(there().at(index), extend),
    // For who comes with the keyboard: one row is current.
    enter: () => { if (current < 0) vorn.step(1, false); },
    goToMessage: id => {
      const index = rows.findIndex(row => row.id === id && !gone.has(id));
      if (index >= 0) {
        goTo(index, false);
        return true;
      }
      current = anchor = -1;  // on another page: no row of this one is meant
      chosen.clear();
      show();
      return false;
    },
    toggle: () => toggle(current),
    // Whether there was a choice to be given up.
    unchoose: () => { const had = chosen.size > 0; chosen.clear(); anchor = -1; show(); return had; },
    deselect: () => { deselect(); tell('row', -1); },
    deselectUnseen: () => {
      if (current >= 0 && isInSight(rows[current])) return;
      vorn.deselect();
    },
    all: () => { chosen = new Set(there().map(index => rows[index].id)); show(); },
    // The chosen messages, or else the current one, in the page's order.
    chosen: chosenIds,
    // The same behind the link on which the keyboard stands, if it does.
    toOpen: () => {
      const link = document.activeElement;
      const isMeant = link instanceof HTMLAnchorElement && link.matches(':focus-visible');
      return [isMeant ? link.href : '', ...chosenIds()];
    },
    // The same, which leave the folder with this: what is asked next is not told them again.
    take: () => {
      const ids = chosenIds();
      remove(ids);
      return ids;
    },
    remove,
    // What was taken stays after all.
    giveBack: ids => {
      const back = ids.filter(id => seen.has(id));
      if (back.length === 0) return;
      back.forEach(id => gone.delete(id));
      goTo(rows.findIndex(row => row.id === back[0]), false);
      if (back.length > 1) chosen = new Set(back);
      show();
    },
    // The message that is read, though others may be chosen besides.
    current: () => current < 0 ? [...chosen][0] || '' : rows[current].id,
    // Where a menu of the current row belongs, from the view's corner.
    menuPlace: () => {
      if (current < 0) return [0, 0];
      const box = rows[current].element.getBoundingClientRect();
      return [Math.max(0, box.left) + 24, Math.min(Math.max(0, box.bottom), innerHeight)];
    },
    links: () => all('a[href], area[href]').map(
        link => [(link.innerText || '').trim() || link.href, link.href]),
    // The current row and those after it, one of which takes its place when it has gone.
    state: () => JSON.stringify({next: there().filter(index => current >= 0 && index >= current)
                                     .map(index => rows[index].id),
                                 anchor: anchor < 0 ? '' : rows[anchor].id,
                                 endTaken,
                                 gap: gap < 0 ? null : there().filter(index => index >= gap).map(index => rows[index].id),
                                 chosen: [...chosen], y: scrollY, x: scrollX, end: isAtEnd(),
                                 sight: inSight()}),
    // Once: the user may have moved since.
    restore: (text, staysAtEnd) => {
      if (text !== restored) restore(JSON.parse(restored = text), staysAtEnd);
      return true;
    },
    // Another version of the page, as bytes in base64, takes the place of this one, at `place` or
    // where the user is now. Gives the number of its rows, or nothing where it has to be loaded.
    replace: (page, place, staysAtEnd) => {
      const bytes = Uint8Array.from(atob(page), letter => letter.charCodeAt(0));
      const text = new TextDecoder(ask(document, 'characterSet')).decode(bytes);
      const other = new DOMParser().parseFromString(text, 'text/html');
      const others = findRows(other);
      const now = {around: aroundRows(rows), rows: new Set(rows.map(row => row.element)),
                   ids: new Map(rows.map(row => [row.id, row]))};
      const next = {around: aroundRows(others), rows: new Map(others.map(row => [row.element, row]))};
      const bodies = [document, other].map(document => allOf(document, 'html > body')[0]);
      if (!now.around || !next.around || !bodies[0] || !bodies[1]) return null;
      if (declared(document) !== declared(other)) return null;
      const state = JSON.parse(place || vorn.state());
      const clickedId = rows[clicked]?.id;
      takeAttributes(allOf(document, 'html')[0], allOf(other, 'html')[0]);
      const heads = [document, other].map(document => allOf(document, 'html > head')[0]);
      if (!heads[0].isEqualNode(heads[1])) heads[0].replaceWith(heads[1]);
      takeChildren(bodies[0], bodies[1], now, next);
      rows = others;
      seen = new Set(rows.map(row => row.id));
      gone.clear();
      clicked = rows.findIndex(row => row.id === clickedId);
      attend();
      restore(state, staysAtEnd);
      return rows.length;
    },
  };

  if (window.vornPlace) vorn.restore(...window.vornPlace);
})()
)js";

/// It says words of the program's own in the user's language.
inline QString PageScript() {
  return QString::fromUtf8(kPageScript).replace(QStringLiteral("%MESSAGES%"), Ui::tr("%1通"));
}

}  // namespace vorn
