// HTML of the reference that Doxygen does not make itself.

import {synonymsFor} from '../model/synonyms.js';

export const escaped = (text) => text.replace(/[&<>"]/g, (c) => `&#${c.charCodeAt(0)};`);

// A signature whose lines break after commas, and not elsewhere.
const wrapped = (code) => code.split(', ').map((part) => `<span>${escaped(part)}</span>`).join(', ');

// What a function's section shows below its first sentence.
export function functionBlock(name, signatures, example) {
  const rows = Object.entries(signatures)
    .map(([language, code]) => `<tr><th>${language}</th><td><code>${wrapped(code)}</code></td></tr>`);
  return `<div id="${name}" class="function"><table class="signatures">${rows.join('')}</table>${example}</div>`;
}

// What stands in place of an example.
export const absence = (reason) => `<p>Not in the playground: ${escaped(reason)}.</p>`;

// Ways on from the front.
export const doors = `<p class="doors"><a class="door" href="playground.html">Open the playground</a>
  <a class="door" href="first_steps.html">First steps</a> <a class="door" href="function.html">All functions</a></p>`;

// The script that the search box reads: what it finds by its name, its text and other words for these.
export function searchIndex(boundary, links, sections) {
  const functions = boundary.functions.map(({name, plain_name: plainName, doc}) => {
    const text = name === plainName ? doc.brief : `${doc.brief} (${name} in C++)`;
    return {name: plainName, link: links.get(plainName), text};
  });
  const entries = [...sections, ...functions]
    .map((entry) => ({...entry, synonyms: synonymsFor(`${entry.name} ${entry.text}`)}));
  return `window.searchIndex = ${JSON.stringify(entries)};\n`;
}

// The page of all functions. An address that names one leads on to its section.
export function functionIndex(boundary, links, pictures) {
  const sections = new Map();
  for (const f of boundary.functions) {
    const title = f.groups.join(': ');
    sections.set(title, [...(sections.get(title) ?? []), f]);
  }
  const picture = (name) => (pictures.has(name) ? `<img src="${pictures.get(name)}" alt="" loading="lazy">` : '');
  const row = ({plain_name: name, name: cppName, doc}) =>
    `<dt id="${name}"><a href="${links.get(name)}">${name}</a></dt><dd>${picture(name)}${escaped(doc.brief)}</dd>`;
  const html = [...sections].map(([title, functions]) =>
    `<h2>${escaped(title)}</h2><dl class="functions">${functions.map(row).join('')}</dl>`).join('\n');
  return `# All functions {#function}

The ${boundary.functions.length} functions by family, under the names that they have in C. In C++ some of them share a
name: these are overloads, and the section of a function shows its name in each language.

@htmlonly[block]
<script>
addEventListener('DOMContentLoaded', () => {
  const row = document.getElementById(decodeURIComponent(location.hash.slice(1)));
  if (row?.matches('.functions > dt')) location.replace(row.querySelector('a').href);
});
</script>
${html}
@endhtmlonly
`;
}
