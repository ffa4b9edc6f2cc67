// The style and the script of the exported page. The page's policy allows only these
// two, identified by digest. A test computes the digests again: change them with the texts.
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
a { color: var(--link); }
.faint, time { color: var(--faint); }
time { font-size: .875rem; white-space: nowrap; }
form { position: sticky; top: 0; padding: .5rem 0; background: var(--paper); }
input { width: 100%; padding: .5rem; font: inherit; color: inherit; background: var(--raised);
  border: 1px solid var(--faint); border-radius: .3rem; }
details { border-top: 1px solid var(--line); }
summary { padding: .4rem 0; cursor: pointer; font-weight: 600; }
summary .faint { font-weight: 400; }
ul { margin: 0 0 .75rem; padding-left: 1.25rem; }
li { margin: .25rem 0; }
dl { margin: .25rem 0; padding: .5rem; background: var(--raised); border-radius: .3rem; }
dt { color: var(--faint); font-size: .875rem; }
dd { margin: 0 0 .25rem; white-space: pre-wrap; }
[hidden] { display: none; }
@media print { form { display: none; } body { max-width: none; padding: 0; }
  details, li { break-inside: avoid; } }
)css";

inline constexpr const char* kScript = R"js(
"use strict";
const form = document.getElementById("search");
const box = document.getElementById("text");
const status = document.getElementById("status");
const hosts = Array.from(document.querySelectorAll("details"), (host) => ({
  element: host, open: false,
  sites: Array.from(host.querySelectorAll(".site"), (site) => ({
    element: site, text: site.textContent.toLowerCase() })) }));
let wasSearching = false;
function search() {
  const text = box.value.trim().toLowerCase();
  const isSearching = text !== "";
  let found = 0;
  let all = 0;
  for (const host of hosts) {
    let foundHere = 0;
    for (const site of host.sites) {
      site.element.hidden = !site.text.includes(text);
      if (!site.element.hidden) foundHere += 1;
    }
    if (isSearching && !wasSearching) host.open = host.element.open;
    host.element.hidden = foundHere === 0;
    if (isSearching) host.element.open = foundHere > 0;
    else if (wasSearching) host.element.open = host.open;
    found += foundHere;
    all += host.sites.length;
  }
  wasSearching = isSearching;
  status.textContent = isSearching ? found + " of " + all + " sites" : all + " sites";
}
form.hidden = false;
form.addEventListener("submit", (event) => event.preventDefault());
box.addEventListener("input", search);
addEventListener("beforeprint", () => {
  for (const host of hosts) if (!host.element.hidden) host.element.open = true;
});
search();
)js";

inline constexpr const char* kStyleDigest = "sha256-FiB6phAJJ5SuXfSvlTdGv0f2EXazp46gq1ATQznrSDE=";
inline constexpr const char* kScriptDigest = "sha256-29q6iLtUVzAn/q2AjqUxUhviHw0kKtAB1a+MTq8kh7c=";

}  // namespace quorrix::html_page
