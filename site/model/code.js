// A pipeline as a whole program in C++, C or Python, as one would write it by hand.

import {codeInC} from './code_c.js';
import {codeInPython} from './code_python.js';
import {isOn, withInitialValues} from './pipeline.js';
import {pictureAfter} from './values.js';

/**
 * A program that reads the BMP file that its command line names first, runs the steps, prints what they measure and
 * writes the last picture to the second file.
 * @param language  "cpp", "c" or "python"
 * @param picture   the start, of which only the size and the channels matter
 */
export function code(state, functions, language, picture) {
  const steps = planned(state, new Map(functions.map((f) => [f.name, f])), picture);
  return language === 'python' ? codeInPython(steps, picture) : codeInC(steps, picture, language === 'cpp');
}

// The steps that are on, with complete parameters and the sizes of the pictures before and after. Pictures are
// numbered: 0 is the start, and each of these steps gives the next one.
function planned(state, functions, start) {
  const steps = [];
  const pictures = [start];
  const numbers = [0];
  for (const step of state.steps) {
    if (isOn(step)) {
      const fn = functions.get(step.call);
      const picture = pictures[pictures.length - 1];
      const parameters = withInitialValues(step, fn, picture);
      for (const p of fn.parameters) {
        const value = parameters[p.name];
        if (p.kind === 'picture') parameters[p.name] = numbers[value === 'start' ? 0 : value + 1];
      }
      const after = pictureAfter(fn, parameters, picture, (number) => pictures[number]);
      steps.push({fn, parameters, picture, after});
      pictures.push(after);
    }
    numbers.push(steps.length);
  }
  return steps;
}
