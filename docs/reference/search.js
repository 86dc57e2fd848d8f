// The search of the reference: a field in the head of each page that lists where its words stand. By lunr, over the
// texts that texts.py has found, all in the reader's browser.
"use strict";

const kMostHits = 10;
const kWeights = { task: 6, guide: 2, header: 1.5, class: 1.5, namespace: 0.5 };

// `parseTime` is found by "time", too.
function words(text) {
  return (text.match(/[\p{L}\p{N}]+/gu) || []).flatMap((word) => {
    const parts = word.match(/\p{Lu}*\p{Ll}+|\p{Lu}+|\p{N}+/gu) || [];
    return (parts.length > 1 ? [word, ...parts] : [word]).map((part) => part.toLowerCase());
  });
}

function makeIndex() {
  return lunr(function () {
    this.tokenizer = (text) => words(text).map((word) => new lunr.Token(word, {}));
    this.pipeline.remove(lunr.stopWordFilter);
    this.b(0.3);
    this.field("title", { boost: 6 });
    this.field("text");
    texts.forEach(([, kind, title, text], at) => this.add({ id: at, title, text }, { boost: kWeights[kind] || 1 }));
  });
}

let index = null;

function find(question) {
  index ||= makeIndex();
  const asked = [...new Set(words(question))];
  const search = (add) => (asked.length ? index.query((query) => asked.forEach((word) => add(query, word))) : []);
  let hits = search((query, word) => {
    query.term(word, { boost: 10 });
    query.term(word, { boost: 2, usePipeline: false, wildcard: lunr.Query.wildcard.TRAILING });
  });
  if (!hits.length) hits = search((query, word) => query.term(word, { usePipeline: false, editDistance: 1 }));
  const found = hits.map((hit) => texts[hit.ref]);
  const isAsked = ([, , title]) => title.split("::").pop().toLowerCase() === question.trim().toLowerCase();
  return [...found.filter(isAsked), ...found.filter((entry) => !isAsked(entry))].slice(0, kMostHits);
}

function element(name, attributes, ...children) {
  const made = Object.assign(document.createElement(name), attributes);
  made.append(...children);
  return made;
}

const field = element("input", { type: "search", placeholder: "Search", autocomplete: "off", ariaLabel: "Search" });
const hits = element("ol", { hidden: true });
const form = element("form", { id: "search" }, field, hits);
form.setAttribute("role", "search");

function show() {
  const found = find(field.value).map(([url, kind, title, text]) => {
    const summary = text.length > 100 ? text.slice(0, 100).replace(/\S*$/, "…") : text;
    const link = element("a", { href: url }, element("b", {}, title), " · " + kind, element("p", {}, summary));
    return element("li", {}, link);
  });
  hits.replaceChildren(...(found.length ? found : [element("li", {}, "Nothing found.")]));
  hits.hidden = !field.value.trim();
}

field.addEventListener("input", show);
field.addEventListener("focus", show);
form.addEventListener("submit", (event) => {
  event.preventDefault();
  hits.querySelector("a")?.click();
});
form.addEventListener("keydown", (event) => {
  const stops = [field, ...hits.querySelectorAll("a")];
  const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
  if (event.key === "Escape") {
    field.value = "";
    field.focus();
    show();
  } else if (step) {
    stops[stops.indexOf(document.activeElement) + step]?.focus();
    event.preventDefault();
  }
});
hits.addEventListener("click", (event) => (hits.hidden = event.target.closest("a") !== null));
for (const leaving of ["pointerdown", "focusin"]) {
  document.addEventListener(leaving, (event) => (hits.hidden ||= !form.contains(event.target)));
}
document.addEventListener("keydown", (event) => {
  if (event.key === "/" && !event.ctrlKey && document.activeElement !== field) {
    field.focus();
    event.preventDefault();
  }
});
document.getElementById("main-nav").before(form);
