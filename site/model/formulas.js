// Formulas in C syntax over names: numbers of elements in boundary.json, ranges in parameters.json.

// Binary operators from the loosest to the tightest.
const LEVELS = [['|'], ['<', '>', '<=', '>='], ['>>'], ['+', '-'], ['*', '/']];

const parsed = new Map();

/** The tree of a formula: a number, a name, {operator, left, right} or {condition, yes, no}. */
export function parse(formula) {
  const text = String(formula);
  if (!parsed.has(text)) parsed.set(text, parseText(text));
  return parsed.get(text);
}

function parseText(text) {
  const tokens = text.match(/\d+(\.\d+)?(e-?\d+)?|[A-Za-z_][\w.]*|<=|>=|>>|\S/g);
  let place = 0;
  const accept = (token) => tokens[place] === token && ++place > 0;

  function conditional() {
    const condition = binary(0);
    if (!accept('?')) return condition;
    const yes = conditional();
    expect(':');
    return {condition, yes, no: conditional()};
  }
  function binary(level) {
    if (level === LEVELS.length) return atom();
    let left = binary(level + 1);
    while (LEVELS[level].includes(tokens[place])) {
      left = {operator: tokens[place++], left, right: binary(level + 1)};
    }
    return left;
  }
  function atom() {
    if (accept('(')) {
      const inner = conditional();
      expect(')');
      return inner;
    }
    if (accept('-')) return {operator: '-', left: 0, right: atom()};
    const token = tokens[place++];
    return /^\d/.test(token) ? Number(token) : token;
  }
  function expect(token) {
    if (!accept(token)) throw new SyntaxError(`"${text}" lacks ${token}`);
  }

  const tree = conditional();
  if (place !== tokens.length) throw new SyntaxError(`"${text}" goes on after its end`);
  return tree;
}

const OPERATIONS = {
  '|': (a, b) => a | b, '>>': (a, b) => a >> b, '<': (a, b) => a < b, '>': (a, b) => a > b,
  '<=': (a, b) => a <= b, '>=': (a, b) => a >= b, '+': (a, b) => a + b, '-': (a, b) => a - b,
  '*': (a, b) => a * b, '/': (a, b) => Math.floor(a / b),
};

/** The value of a formula, with `values` for its names. Quotients are rounded down. */
export function evaluate(formula, values) {
  const value = (tree) => {
    if (typeof tree === 'number') return tree;
    if (typeof tree === 'string') {
      if (!(tree in values)) throw new ReferenceError(`"${formula}" needs ${tree}`);
      return Number(values[tree]);
    }
    if (tree.condition !== undefined) return value(value(tree.condition) ? tree.yes : tree.no);
    return Number(OPERATIONS[tree.operator](value(tree.left), value(tree.right)));
  };
  return value(parse(formula));
}

/**
 * The tree of a formula with names replaced by what `words` has for them: numbers, names or trees. Parts that then
 * hold numbers alone are computed.
 */
export function substitute(formula, words) {
  const known = (tree) => {
    if (typeof tree === 'number') return tree;
    if (typeof tree === 'string') return tree in words ? words[tree] : tree;
    if (tree.condition !== undefined) {
      const condition = known(tree.condition);
      if (typeof condition === 'number') return known(condition ? tree.yes : tree.no);
      return {condition, yes: known(tree.yes), no: known(tree.no)};
    }
    const {operator} = tree;
    const left = known(tree.left);
    const right = known(tree.right);
    if (typeof left === 'number' && typeof right === 'number') return Number(OPERATIONS[operator](left, right));
    if (operator === '*' && right === 1) return left;
    if (operator === '*' && left === 1) return right;
    if ('+-'.includes(operator) && right === 0) return left;
    return {operator, left, right};
  };
  return known(parse(formula));
}

/** A tree as source in C or Python. */
export function print(tree, python = false) {
  const write = (part, level) => {
    if (typeof part !== 'object') return String(part);
    let text;
    let own = -1;
    if (part.condition !== undefined) {
      const [condition, yes, no] = [part.condition, part.yes, part.no].map((t) => write(t, 0));
      text = python ? `${yes} if ${condition} else ${no}` : `${condition} ? ${yes} : ${no}`;
    } else {
      own = LEVELS.findIndex((operators) => operators.includes(part.operator));
      const operator = python && part.operator === '/' ? '//' : part.operator;
      text = `${write(part.left, own)} ${operator} ${write(part.right, own + 1)}`;
    }
    return own < level ? `(${text})` : text;
  };
  return write(tree, 0);
}
