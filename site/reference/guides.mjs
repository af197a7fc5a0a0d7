// The guides as Doxygen reads them for the site.
//
// A guide may be a document that stands elsewhere in the project. `<!-- include FILE -->` stands for the text of a
// file without its title, and `<!-- include FILE: HEADING -->` for one section of it, or for all sections if the
// heading is *.

import {readFile} from 'node:fs/promises';
import {dirname, join} from 'node:path/posix';

function part(text, file, heading) {
  if (!heading) return text.replace(/^# .*\n/, '');
  if (heading === '*') return text.slice(text.indexOf('\n## ') + 1);
  const start = text.indexOf(`\n## ${heading}\n`);
  if (start < 0) throw new Error(`${file} has no section "${heading}"`);
  return text.slice(start + heading.length + 5).split('\n## ')[0];
}

const slug = (heading) => heading.toLowerCase().replace(/[^a-z0-9]+/g, '_').replace(/^_|_$/g, '');

// Names of functions become links. So do links to documents of the site; those to other files become text.
function linked(text, folder, site) {
  return text
    .replace(/!\[(.*?)\]\((\S+?)\)/g, (_, words, path) => site.picture(join(folder, path), words))
    .replace(/(?<!!)\[([^\]]*)\]\(([^)#\s]*)(#[^)\s]*)?\)/g, (whole, words, path, anchor = '') => {
      if (/^\w+:/.test(path)) return whole;
      const page = site.pages.get(path && join(folder, path));
      if (!page) return words;
      return `[${words}](${page}.html${anchor && `#${page}_${slug(anchor)}`})`;
    })
    .replace(/`(Nuv\w+|Brindlemar\w+)`/g, (whole, name) => {
      const link = site.functionLink(name);
      return link ? `<a href="${link}"><code>${name}</code></a>` : whole;
    });
}

// Applies a change to Markdown outside its blocks of code.
const outsideCode = (text, change) => text.split(/(^```[^]*?^```$|^    .*$)/m)
  .map((piece, i) => (i % 2 === 0 ? change(piece) : piece)).join('');

// Returns a guide's text for Doxygen. `site` has
//   pages                 the label of the page of each document of the site, by its path
//   functionLink(name)    the address of a function's section, or undefined
//   picture(path, words)  the HTML of a picture of the project
//   fragments             HTML that a guide names as `<!-- NAME -->`
export async function readGuide(root, file, label, site) {
  const read = (path) => readFile(`${root}/${path}`, 'utf8');
  const pieces = (await read(file)).split(/<!-- include ([^\s:]+)(?:: (.+?))? -->/);
  let text = '';
  for (let i = 0; i < pieces.length; i += 3) {
    text += outsideCode(pieces[i], (t) => linked(t, dirname(file), site));
    const [path, heading] = pieces.slice(i + 1, i + 3);
    if (path) text += outsideCode(part(await read(path), path, heading), (t) => linked(t, dirname(path), site));
  }
  for (const [name, html] of Object.entries(site.fragments))
    text = text.replace(`<!-- ${name} -->`, () => `@htmlonly[block]\n${html}\n@endhtmlonly`);
  return outsideCode(text, (t) => t
    .replace(/^# (.*)$/m, `# $1 {#${label === 'index' ? 'mainpage' : label}}`)
    .replace(/^(##+) (.*)$/gm, (_, level, heading) => `${level} ${heading} {#${label}_${slug(heading)}}`));
}
