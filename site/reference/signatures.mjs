// The signatures of all functions in C++, C and Python, by the plain name of a function.
//
// boundary.json gives those of C++. The header of the C library and the stubs of the Python package are made from it;
// they are read, so that a page shows what a host includes and imports.

import {readFile} from 'node:fs/promises';

// Types of the stubs as numpy names them.
const PYTHON_TYPES = {
  U1: 'NDArray[uint8]',
  I4: 'NDArray[int32]',
  U4: 'NDArray[uint32]',
  F8: 'NDArray[float64]',
  B1: 'NDArray[bool]',
  Records: 'NDArray',
  Numbers: 'ArrayLike',
  Text: 'str',
};

function cppSignature(f) {
  const spaced = (type, name) => type.replace(/(\*+)$/, '$1 ').replace(/([^ ])$/, '$1 ') + name;
  const list = f.arguments.map((a) => spaced(a.type, a.name)).join(', ');
  return `${spaced(f.result, f.name)}(${list})`;
}

function cSignatures(header) {
  const declarations = header.matchAll(/^NUV_C_API ([^;]*?(\w+)\([^;]*\));/gm);
  return new Map([...declarations].map(([, text, name]) => [name, text.replace(/\s+/g, ' ')]));
}

function pythonSignatures(stubs) {
  const tuples = new Map();
  for (const [, name, body] of stubs.matchAll(/^class (\w+Results)\(NamedTuple\):\n((?:    .*\n)+)/gm))
    tuples.set(name, '(' + body.trim().split(/\n\s*/).join(', ') + ')');
  const readable = (text) => text
    .replace('Optional[Out] = ...', 'None').replace('out: None', 'out=None').replaceAll(' = ...', '=...')
    .replace(/\b\w+Results\b/, (name) => tuples.get(name) ?? name)
    .replace(/(?<=: |-> |\[)\w+\b/g, (type) => PYTHON_TYPES[type] ?? type);
  // The overloads of one name stand in the order of their plain names, of which the first is that name itself.
  const definitions = [...stubs.matchAll(/^def ((\w+)\(.*?): \.\.\.$/gm)].reverse();
  return new Map(definitions.map(([, text, name]) => [name, readable(text)]));
}

export async function readSignatures(boundary, root) {
  const c = cSignatures(await readFile(`${root}/bindings/c/nuvimgsdk_c.h`, 'utf8'));
  const python = pythonSignatures(await readFile(`${root}/bindings/python/nuvimgsdk/__init__.pyi`, 'utf8'));
  return new Map(boundary.functions.map((f) => {
    const name = f.plain_name;
    return [name, {'C++': cppSignature(f), 'C': c.get(name), 'Python': python.get(name)}];
  }));
}
