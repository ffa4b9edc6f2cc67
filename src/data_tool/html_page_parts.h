// The style and the script of the exported page. The page's policy allows only these
// two, identified by digest. A test computes the digests again: change them with the texts.
//
// A page may have 100,000 sites. So the browser lays out only the hosts and sites that are in view,
// and no item is of the type list-item, whose numbers take quadratic time when many are hidden.
#pragma once

namespace quorrix::html_page {

inline constexpr const char* kStyle = R"css(
:root { color-scheme: light dark; --ink: #1c1f23; --paper: #ffffff; --faint: #5a6370;
  --line: #d5dae1; --link: #0b57a4; --raised: #f4f6f9; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e6e8eb; --paper: #16191d; --faint: #a3adba; --line: #3a424d;
    --link: #8ab8ff; --raised: #20252b; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 60rem; padding: 1rem; background: var(--paper);
  color: var(--ink); font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; margin: 0 0 .5rem; }
h2 { font-size: 1.2rem; margin: 2rem 0 .5rem; }
a { color: var(--link); unicode-bidi: plaintext; }
.faint, .site, summary span { color: var(--faint); }
form { position: sticky; top: 0; padding: .5rem 0; background: var(--paper); }
input { width: 100%; padding: .5rem; font: inherit; color: inherit; background: var(--raised);
  border: 1px solid var(--faint); border-radius: .3rem; }
ul { margin: 0; padding: 0; }
li { display: block; }
main > ul > li, li.site { content-visibility: auto; contain-intrinsic-size: auto 2.1rem; }
main > ul > li { border-top: 1px solid var(--line); }
details ul { margin-left: .4rem; padding-left: .6rem; border-left: 1px solid var(--line); }
ul ul ul ul ul ul ul ul ul ul { margin-left: 0; padding-left: 0; border-left: 0; }
summary { padding: .3rem 0; cursor: pointer; font-weight: 600; }
summary span { font-weight: 400; }
.site { padding: .3rem 0 .3rem 1.1rem; font-size: .875rem; }
.site > a, .site > bdi { font-size: 1rem; }
.site > bdi { color: var(--ink); }
time { white-space: nowrap; }
dl { margin: .25rem 0; padding: .5rem; background: var(--raised); border-radius: .3rem;
  color: var(--ink); font-size: 1rem; }
dt { color: var(--faint); font-size: .875rem; }
dd { margin: 0 0 .25rem; white-space: pre-wrap; }
[hidden] { display: none; }
@media print { form { display: none; } body { max-width: none; padding: 0; }
  li { content-visibility: visible; } .site { break-inside: avoid; } }
)css";

inline constexpr const char* kScript = R"js(
"use strict";
const form = document.getElementById("search");
const box = document.getElementById("text");
const status = document.getElementById("status");
const count = document.querySelectorAll(".site").length;
const branches = new Map();
let sites = null;
let wasSearching = false;
function counted(number) {
  return number + (number === 1 ? " site" : " sites");
}
function branchAround(element) {
  return branches.get(element.parentElement.closest("details"));
}
// The name of an empty level is its whole address, and the only one with "/" at its end.
function addressOf(above, name) {
  return above && !name.endsWith("/") ? above.address + "/" + name : name;
}
function readPage() {
  for (const element of document.querySelectorAll("details")) {
    const above = branchAround(element);
    const name = element.querySelector("bdi").textContent;
    branches.set(element, { element, item: element.parentElement, above, open: false,
      isFound: false, address: addressOf(above, name) });
  }
  sites = Array.from(document.querySelectorAll(".site"), (element) => {
    const branch = branchAround(element);
    const links = Array.from(element.children).filter((child) => child.localName === "a");
    const name = (links[0] || element.querySelector("bdi")).textContent;
    const isWhole = element.localName === "div";
    const address = isWhole ? name : addressOf(branch, name);
    // Browsers show a host with "/" at its end.
    const texts = [address.endsWith("/") ? address : address + "/"];
    for (const detail of element.querySelectorAll("dd")) texts.push(detail.textContent);
    return { element, branch, text: texts.join("\n").toLowerCase(),
      schemes: links.map((link) => link.getAttribute("href").split("//")[0] + "//") };
  });
}
// Schemes count only in a text that may be a whole address.
function has(site, text) {
  return site.text.includes(text) || (text.includes(":") &&
    site.schemes.some((scheme) => (scheme + site.text).includes(text)));
}
function show(element, isShown) {
  if (element.hidden === isShown) element.hidden = !isShown;
}
function search() {
  const text = box.value.trim().toLowerCase();
  const isSearching = text !== "";
  if (!isSearching && !wasSearching) return;
  if (!sites) readPage();
  for (const branch of branches.values()) branch.isFound = false;
  let found = 0;
  for (const site of sites) {
    const isFound = has(site, text);
    show(site.element, isFound);
    if (!isFound) continue;
    found += 1;
    for (let branch = site.branch; branch && !branch.isFound; branch = branch.above) {
      branch.isFound = true;
    }
  }
  for (const branch of branches.values()) {
    if (isSearching && !wasSearching) branch.open = branch.element.open;
    show(branch.item, branch.isFound);
    const isOpen = isSearching ? branch.isFound : branch.open;
    if (branch.element.open !== isOpen) branch.element.open = isOpen;
  }
  for (const part of document.querySelectorAll("main > ul, main > p")) {
    const isShown = !isSearching || Array.from(part.children).some((item) => !item.hidden);
    show(part, isShown);
    const heading = part.previousElementSibling;
    if (heading.localName === "h2") show(heading, isShown);
  }
  wasSearching = isSearching;
  status.textContent = (isSearching ? found + " of " : "") + counted(count);
}
form.hidden = false;
status.textContent = counted(count);
form.addEventListener("submit", (event) => event.preventDefault());
box.addEventListener("input", search);
let folded = [];
addEventListener("beforeprint", () => {
  folded = Array.from(document.querySelectorAll("details:not([open])"));
  for (const element of folded) element.open = true;
});
addEventListener("afterprint", () => {
  for (const element of folded) element.open = false;
});
)js";

inline constexpr const char* kStyleDigest = "sha256-AGxl+uza6dQXv4+LxkZn9feBBW+90H5R9QgGELlzehk=";
inline constexpr const char* kScriptDigest = "sha256-Oga2egEjPAsXjH3pIW2Xh8zWFEs+v9m2NPRzEIf8ncE=";

}  // namespace quorrix::html_page
