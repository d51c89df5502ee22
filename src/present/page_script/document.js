// What a document is asked. An element's name hides what the document offers under that name, so
// it is asked the long way.

function listen(kind, heard) {
  EventTarget.prototype.addEventListener.call(document, kind, heard, true);
}

function allOf(document, selector) {
  return [...Document.prototype.querySelectorAll.call(document, selector)];
}

function ask(document, name) {
  return Object.getOwnPropertyDescriptor(Document.prototype, name).get.call(document);
}

function newElement(name) {
  return Document.prototype.createElement.call(document, name);
}

function addToPage(element) {
  allOf(document, 'html')[0].appendChild(element);
}
