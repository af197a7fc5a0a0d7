// The headers as Doxygen reads them for the site: each function has a block of HTML of its own.

import {readFile} from 'node:fs/promises';

// Doxygen's name of the page of a group.
const groupPage = (id) => `group__${id.replaceAll('_', '__')}.html`;

// The line of each exported function in the order of their declarations, with the group that holds it.
function* declarations(lines) {
  const groups = [];
  let group;
  for (const [index, line] of lines.entries()) {
    group = line.match(/^\/\/\/ @defgroup (\w+)/)?.[1] ?? group;
    if (line === '/// @{') groups.push(group);
    if (line === '/// @}') groups.pop();
    const name = line.match(/^NUV_API [^(]*\b(\w+)\(/)?.[1];
    if (name) yield {index, name, page: groupPage(groups.at(-1))};
  }
}

// The headers that boundary.json names: {file, lines, page, groups: [{name, link, text}],
// functions: [{index, name, page, plainName}]}.
export async function readHeaders(root, boundary) {
  const files = [...new Set(boundary.functions.map((f) => f.header))];
  return Promise.all(files.map(async (file) => {
    const lines = (await readFile(`${root}/include/${file}`, 'utf8')).split('\n');
    const found = [...declarations(lines)];
    const described = boundary.functions.filter((f) => f.header === file);
    const functions = described.map((f, i) => ({...found[i], plainName: f.plain_name}));
    if (found.length !== described.length || described.some((f, i) => f.name !== found[i].name))
      throw new Error(`boundary.json does not list the functions of ${file} in their order`);
    const groups = [...lines.join('\n').matchAll(/^\/\/\/ @defgroup (\w+) (.*)\n\/\/\/\n\/\/\/ (.*)/gm)]
      .map(([, id, name, text]) => ({name, link: groupPage(id), text}));
    return {file, lines, functions, groups, page: groups[0].link};
  }));
}

// A line of a comment with links from names of functions. Lines of code and of commands stay as they are.
function linked(line, functionLink) {
  if (!line.startsWith('///') || /^\/\/\/( {5}| @defgroup| @file)/.test(line)) return line;
  return line.replace(/\bNuv\w+\b/g, (name) => (functionLink(name) ? `[${name}](${functionLink(name)})` : name));
}

// The text of a header with block(name) after the first paragraph of each function's comment.
export function withBlocks({lines, functions}, block, functionLink) {
  const result = lines.map((line) => linked(line, functionLink));
  for (const {index, plainName} of [...functions].reverse()) {
    let start = index;
    while (lines[start - 1].startsWith('///')) --start;
    let end = start;
    while (end < index && !/^\/\/\/( @(?!overload).*)?$/.test(lines[end])) ++end;
    const html = block(plainName).replace(/\n\s*/g, ' ');
    result.splice(end, 0, `/// @htmlonly[block]${html}@endhtmlonly`);
  }
  // Each overload has an entry of its own, so Doxygen's sentence about overloads is left out.
  return result.filter((line) => line !== '/// @overload').join('\n');
}
