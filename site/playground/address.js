// The state of the page in its address.

import {encode} from '../model/pipeline.js';

// Browsers limit how often an address may change, and a slider moves often.
const LEAST_PAUSE = 250;

let later = null;  // {timer, state}: a change that is still to be written

// Writes a state. With `replaces` it takes the place of the last one, otherwise the back button leads to that.
export function writeAddress(state, replaces) {
  if (replaces) {
    later ??= {timer: setTimeout(settleAddress, LEAST_PAUSE)};
    later.state = state;
  } else {
    settleAddress();
    history.pushState(null, '', `#${encode(state)}`);
  }
}

// Writes at once what is still to be written.
export function settleAddress() {
  if (!later) return;
  history.replaceState(null, '', `#${encode(later.state)}`);
  forgetAddress();
}

// Gives up what is still to be written.
export function forgetAddress() {
  clearTimeout(later?.timer);
  later = null;
}
