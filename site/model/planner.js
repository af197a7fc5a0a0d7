// Plans the entry of a function in the catalogue from its description in boundary.json: a step consists of calls,
// whose numbers are formulas and whose pointers are memories.
//
// A number is bound to a formula over these names:
//
//     width, height, channels     of the current picture
//     M, region.left, point.x     parameters and their fields
//     Img2.width, Img2.height     sizes of the picture that the parameter Img2 names
//     chain.x, chain.y, chain.N   the largest contour of the current picture
//     points.N                    the number of white pixels of the current picture
//
// A pointer is bound to a memory of the step: {from: ...}
//
//     "picture"    the picture that `picture` names: "current" or a parameter; `copy` if the call changes it
//     "new"        zeroed memory: results and work space
//     "text"       a parameter
//     "chain"      the codes of the largest contour
//     "points"     the columns or rows of the white pixels; `field` is "x" or "y"
//
// Calls before the main one prepare what it takes: a histogram, a profile, a camera frame, a contour, a detector.

// Consecutive numbers that are one parameter: their names, its kind, and for each number a field.
const GROUPS = [
  ['x1 x2 y1 y2', 'region', 'region.left region.right region.top region.bottom'],
  ['x1 y1 x2 y2', 'point', 'point1.x point1.y point2.x point2.y'],
  ['x3 y3', 'point', 'point3.x point3.y'],
  ['x y', 'point', 'point.x point.y'],
  ['x0 y0', 'point', 'point.x point.y'],
  ['px py', 'point', 'point.x point.y'],
  ['cx cy', 'point', 'centre.x centre.y'],
  ['r g b', 'colour', 'colour.red colour.green colour.blue'],
  ['b g r', 'colour', 'colour.blue colour.green colour.red'],
  ['colorR colorG colorB', 'colour', 'colour.red colour.green colour.blue'],
  ['bkR bkG bkB', 'colour', 'background.red background.green background.blue'],
  ['fgR fgG fgB', 'colour', 'foreground.red foreground.green foreground.blue'],
].map(grouped);

function grouped([names, kind, fields]) {
  return {names: names.split(' '), kind, fields: fields.split(' ')};
}

// Outputs that are one result: their names, the kind, and the fields in the same order.
const OUTPUTS = [
  ['pX1 pY1 pX2 pY2', 'segments', 'x1 y1 x2 y2'],
  ['pX1 pX2 pY1 pY2', 'rectangle', 'left right top bottom'],
  ['pMinX pMaxX pMinY pMaxY', 'rectangle', 'left right top bottom'],
  ['pX pY', 'points', 'x y'],
  ['pMaxX pMaxY', 'points', 'x y'],
  ['pKeyX pKeyY', 'points', 'x y'],
  ['pPolyX pPolyY', 'points', 'x y'],
].map(grouped);

// Outputs that repeat the size of a result.
const SIZES = /^p(Res|New)(Width|Height)$/;

const base = (a) => a.type.replace('const ', '').replace(/\*$/, '');
const isPointer = (a) => a.type.endsWith('*');
const isImage = (a) => base(a) === 'uint8_t' &&
    (a.shape !== undefined || a.tail !== undefined || (/Img/.test(a.name) && a.count === 'N'));
const plainName = (name) => name.replace(/^p+(?=[A-Z])/, '');

/** The entry of one function. */
export class Planner {
  constructor(f, described, records, choices) {
    Object.assign(this, {f, described, records, choices});
    this.own = choices.functions[f.plain_name] ?? {};
    this.parameters = new Map();
    this.memories = {};
    this.calls = [];
    this.takes = undefined;
  }

  entry() {
    const {f, own} = this;
    for (const name of own.first ?? []) this.add(this.described.get(name), false);
    const main = this.add(f, true);
    if (own.after) this.add(this.described.get(own.after), false).lines = true;
    const picture = this.picture(main);
    const results = this.results(main, picture);
    return {
      name: f.plain_name, cppName: f.name, brief: f.doc.brief, text: f.doc.text, notes: f.doc.notes,
      references: f.doc.references, rooms: f.groups, link: f.plain_name,
      takes: this.takes ?? 'none',
      example: this.example(main),
      parameters: [...this.parameters.values()],
      results: picture ? [picture, ...results] : results,
      changesPicture: picture !== undefined,
      // What the engine and code() need: the calls, the one among them that gives the results, and their memory.
      calls: this.calls, main: this.calls.indexOf(main), memories: this.memories,
      clearBorder: own.clearBorder,
    };
  }

  // Binds the arguments of a function and adds the call. `fixed` gives numbers that are no parameters, and `source`
  // names the picture that the function takes.
  add(f, isMain, fixed = {}, source = 'current') {
    const call = {
      name: f.plain_name, cppName: f.name, result: f.result, resultMemory: f.result_memory, returns: f.doc.returns,
      record: this.records.get(f.result.replace(/\*$/, '')), regionsInside: f.regions_inside,
      capacity: f.lists?.capacity, arguments: f.arguments.map((a) => ({...a})),
    };
    const numbers = call.arguments.filter((a) => !isPointer(a));
    const bind = (name, formula) => {
      const a = numbers.find((b) => b.name === name);
      if (a) a.formula ??= formula;
    };
    for (const [name, formula] of Object.entries(fixed)) bind(name, formula);
    const current = currentImage(call);
    for (const a of call.arguments.filter(isPointer)) {
      const memory = this.memory(f, a, a === current ? source : undefined, current, bind);
      if (typeof memory === 'string') {
        a.memory = memory;
      } else {
        // Memories of other calls than the main one have the function's name before their own.
        a.memory = isMain ? a.name : `${f.plain_name}.${a.name}`;
        this.memories[a.memory] = memory;
      }
    }
    if (isMain && this.own.bind) {
      this.trace();
      for (const [name, formula] of Object.entries(this.own.bind)) bind(name, formula);
    }
    for (const name of ['width', 'height']) bind(name, name);
    bind('bRGB', 'channels > 1');
    if (call.capacity) bind(call.capacity, 'width*height');
    this.bindParameters(f, numbers.filter((a) => a.formula === undefined));
    if (isMain && this.own.inside) numbers.filter((a) => a.type === 'tagRECT').forEach((a) => (a.inside = true));
    this.calls.push(call);
    return call;
  }

  // The memory of a pointer, or the name of one that the step has. `source` is stated for the current image alone.
  memory(f, a, source, current, bind) {
    const isChanged = a.direction === 'inout' && !a.keeps && a.role !== 'result';
    if (base(a) === 'char') return {from: 'text', parameter: this.parameter(f, a, plainName(a.name), 'text').name};
    if (source) {
      if (source === 'current') this.takes = takes(a);
      bindSizes(a, bind, source === 'current' ? '' : `${source}.`);
      return {from: 'picture', picture: source, takes: takes(a), copy: a.direction === 'inout', tail: a.tail};
    }
    if (isImage(a) && isChanged && a.name === 'pResImg') return {from: 'picture', picture: 'current', copy: true};
    if (isImage(a) && (isChanged || a.direction === 'in')) {
      const {name} = this.parameter(f, a, plainName(a.name), 'picture');
      if (a.shape) bindSizes(a, bind, `${name}.`);
      const anySize = a.shape && current?.shape && a.shape[1] !== current.shape[1];
      return {from: 'picture', picture: name, takes: takes(a), copy: a.direction === 'inout', anySize};
    }
    if (isChain(a)) {
      this.trace();
      for (const name of ['x', 'y', 'N']) bind(name, `chain.${name}`);
      return 'chain';
    }
    if (/^p[XY]$/.test(a.name) && a.direction !== 'out' && a.count !== '1') return this.points(a, bind);
    if (a.direction === 'in') return this.prepared(f, a, bind);
    const type = base(a);
    const rows = a.shape && ['y2+1', 'rows'].includes(a.shape[0]) ? ['height', ...a.shape.slice(1)] : a.shape;
    return {from: 'new', type, record: this.records.get(type), count: a.count, shape: rows ?? frameShape(a),
            work: a.direction === 'work' || a.role === 'scratch', preset: this.own.preset?.[a.name]};
  }

  // The largest contour of the current picture.
  trace() {
    if ('chain' in this.memories) return;
    this.memories.chain = {from: 'chain'};
    this.takes ??= 'gray';
    const call = this.add(this.described.get('NuvGetContours'), false, {minPerimeter: '8', minArea: '1', mode: '1'});
    call.traces = true;
  }

  // The white pixels of the current picture, or the positions of its largest contour.
  points(a, bind) {
    bind('N', this.own.points === 'contour' ? 'chain.N' : 'points.N');
    if (this.own.points === 'contour') {
      this.trace();
      if (!('NuvChain2Points.pX' in this.memories)) this.add(this.described.get('NuvChain2Points'), false);
      return `NuvChain2Points.${a.name}`;
    }
    this.takes ??= 'gray';
    const field = a.name === 'pX' ? 'x' : 'y';
    this.memories[`points.${field}`] ??= {from: 'points', field};
    return `points.${field}`;
  }

  // Data that a call before this one computes from the picture. Returns the name of the memory.
  prepared(f, a, bind) {
    const prepare = (name, output, takes, source) => {
      this.takes ??= takes;
      const key = `${name}.${output}`;
      if (!(key in this.memories)) this.add(this.described.get(name), false, {}, source);
      return key;
    };
    if (a.name === 'pTargetHistogram') {
      return prepare('NuvGetHistogram', 'pHistogram', 'gray', this.parameter(f, a, 'Target', 'picture').name);
    }
    if (/Histogram$/.test(a.name)) {
      bind(a.count, '256');
      return prepare('NuvGetHistogram', 'pHistogram', 'gray');
    }
    if (/^p(Prj|Data)$/.test(a.name) && base(a) === 'int32_t') {
      const rows = /height/.test(a.count);
      bind('N', rows ? 'height' : 'width');
      return prepare('NuvGryImgPrjXY', rows ? 'pPrjY' : 'pPrjX', 'gray');
    }
    const [format] = /CbYCrY|YUV420SP|YUV420P|YUV422P/.exec(f.plain_name) ?? [];
    if (format && base(a) === 'uint8_t') {
      return prepare(`NuvRGB2${format}`, format === 'CbYCrY' ? 'pCbYCrYImg' : 'pYUVImg', 'colour');
    }
    throw new Error(`${f.plain_name}: parameters.json must say why it is left out, or where ${a.name} comes from`);
  }

  // Makes parameters of the numbers that nothing else gives.
  bindParameters(f, numbers) {
    const groups = this.own.groups ? [grouped(this.own.groups)] : GROUPS;
    for (let i = 0; i < numbers.length;) {
      const a = numbers[i];
      const group = groups.find(({names}) => names.every((name, k) => numbers[i + k]?.name === name));
      if (group) {
        group.fields.forEach((field, k) => {
          this.parameter(f, numbers[i + k], field.split('.')[0], group.kind);
          numbers[i + k].formula = field;
        });
      } else {
        this.parameter(f, a, a.name, KINDS[a.type]);
        a.formula = a.type === 'tagRECT' ? `${a.name}.` : a.name;
      }
      i += group?.names.length ?? 1;
    }
  }

  // The parameter of this name, made when it is first met.
  parameter(f, a, name, kind) {
    if (!this.parameters.has(name)) {
      const {parameters, parametersOf} = this.choices;
      const chosen = {...parameters[kind], ...parameters[name], ...parametersOf[this.f.plain_name]?.[name]};
      const help = chosen.help ?? a.doc;
      this.parameters.set(name, {
        name, label: chosen.label ?? name, kind: chosen.options ? 'option' : kind, least: chosen.least,
        most: chosen.most, step: chosen.step ?? (kind === 'integer' ? 1 : undefined), initial: chosen.initial,
        options: chosen.options, help: help && help[0].toUpperCase() + help.slice(1),
      });
    }
    return this.parameters.get(name);
  }

  // A state that shows what the function does.
  example(main) {
    const {own} = this;
    const wantsBinary = Object.keys(this.memories).some((key) => key === 'chain' || key.startsWith('points.')) ||
        main.arguments.some((a) => /^p(Bin|Edge)Img$/.test(a.name) && this.memories[a.memory].picture === 'current');
    const before = own.before ?? (wantsBinary ? this.choices.binary : []);
    const step = {call: this.f.plain_name, parameters: own.example ?? {}};
    return {picture: own.picture ?? this.choices.pictures[this.takes ?? 'none'], steps: [...before, step]};
  }

  // The memory that is the step's result picture: a result before a changed picture.
  picture(main) {
    if (this.own.measures) return undefined;
    if (main.resultMemory === 'delete[]') return {name: 'result', kind: 'picture', help: main.returns};
    const pictures = main.arguments.filter((a) => this.isResultPicture(a));
    const a = pictures.find((b) => b.name === 'pResImg') ?? pictures[0];
    return a && {name: plainName(a.name), kind: 'picture', help: a.doc, memories: [a.memory]};
  }

  isResultPicture(a) {
    const m = this.memories[a.memory];
    if (m === undefined || a.direction === 'in') return false;
    return m.from === 'picture' ? m.copy : m.type === 'uint8_t' && m.shape !== undefined && !m.work;
  }

  // What the step gives besides its picture.
  results(main, picture) {
    const results = [];
    const add = (result) => results.push({label: this.choices.results[result.name], ...result});
    const lists = this.f.lists?.outputs ?? [];
    const kind = {int32_t: 'number', double: 'number', bool: 'text', 'NUV_CONTOUR_STRUCT*': 'contours',
                  'RegionStruct*': 'regions'}[main.result];
    const isSuccess = main.result === 'bool' && picture !== undefined;
    if (kind && !isSuccess && !lists.length) {
      const name = kind === 'contours' || kind === 'regions' ? kind : 'result';
      add({name, kind, help: main.returns});
    }
    const outputs = main.arguments.filter((a) => this.isOutput(a) && a.memory !== picture?.memories?.[0]);
    for (let i = 0; i < outputs.length;) {
      const group = OUTPUTS.find(({names}) => names.every((name, k) => outputs[i + k]?.name === name));
      const members = outputs.slice(i, i + (group?.names.length ?? 1));
      const [a] = members;
      add({
        name: members.map((b) => plainName(b.name)).join(' '),
        kind: group?.kind ?? (this.isResultPicture(a) ? 'picture' : kindOf(a)), help: a.doc,
        memories: members.map((b) => b.memory), fields: group?.fields, counted: lists.includes(a.name),
      });
      i += members.length;
    }
    if (this.own.after) add({name: 'segments', kind: 'segments', help: 'The fitted lines.', from: 'after'});
    return results;
  }

  isOutput(a) {
    if (!isPointer(a) || a.direction === 'in' || SIZES.test(a.name)) return false;
    const m = this.memories[a.memory];
    return m.from === 'new' ? !m.work : this.isResultPicture(a) && !this.own.measures;
  }
}

const KINDS = {int32_t: 'integer', uint32_t: 'integer', uint8_t: 'integer', double: 'real', bool: 'switch',
               tagRECT: 'region'};

const isChain = (a) => a.name === 'pChainCode' && a.direction === 'in';

// The argument that is the current picture: one that is changed before one that is read. Beside a chain, a gray image
// that is only read is another one than that in which the chain was traced.
function currentImage(call) {
  const images = call.arguments.filter(isImage);
  const hasChain = call.arguments.some(isChain);
  return images.find((a) => a.role === 'pasted_into') ??
      images.find((a) => a.direction === 'inout' && a.name !== 'pResImg') ??
      images.find((a) => a.direction === 'in' && !(hasChain && a.name === 'pGryImg'));
}

// Binds the rows and columns that a picture knows.
function bindSizes(a, bind, owner) {
  if (a.shape) {
    bind(a.shape[0], `${owner}height`);
    bind(a.shape[1], `${owner}width`);
  } else if (a.count === 'N') {
    bind('N', 'width*height*channels');
  }
}

// What kind of picture an image argument takes.
function takes(a) {
  if (!a.shape) return a.tail === undefined ? 'either' : 'gray';
  return a.shape.length === 2 ? 'gray' : a.shape[2] === 3 ? 'colour' : 'either';
}

// Camera frames are shown as gray pictures of their bytes.
function frameShape(a) {
  if (!/^p(CbYCrY|YUV|Res)Img$/.test(a.name)) return undefined;
  return {'width*height*2': ['height', '2*width'], 'width*height*3/2': ['height*3/2', 'width'],
          '(x2-x1+1)*(y2-y1+1)*2': ['y2-y1+1', '2*(x2-x1+1)'],
          '(x2-x1+1)*(y2-y1+1)*3/2': ['(y2-y1+1)*3/2', 'x2-x1+1'],
          '6*width*height': ['6*height', 'width'], N: ['height', 'width', 'channels']}[a.count];
}

function kindOf(a) {
  const type = base(a);
  if (type === 'RLX' || type === 'RLY') return 'segments';
  if (type === 'tagRECT') return 'rectangle';
  if (a.count === '1') return 'number';
  return /Histogram$/.test(a.name) ? 'histogram' : 'numbers';
}
