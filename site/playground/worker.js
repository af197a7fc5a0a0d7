// Runs pipelines in a thread of its own.
//
// In:  {module, functions}      once
//      {picture}                the picture that pipelines begin with
//      {run, state, have}       a pipeline; run numbers the requests, have[step] is the run that made what the page has
// Out: {run, step, began: true}                                     before each call
//      {run, step, made, picture, results, milliseconds}            after it; made is the run that computed it
//      {run, step, made, complaints: [{parameter, sentence}]}       what it cannot take; later steps are not run
//      {run, step, made}                                            if the page holds it already
//      {run, done: true}
//      {failed: sentence}                                           if the worker itself fails
//
// A new request takes the place of a running one after its present step. Steps that are as they were are not run again.

import {Engine} from '../model/engine.js';
import {initialValues} from '../model/catalogue.js';
import {complaints} from '../model/pipeline.js';

let module, functions, byName, start;
let engine;  // a promise: pipelines may arrive while it is loaded
let newest = 0;
let known = [];  // for each step that was run: {key, made, outcome}

onmessage = ({data}) => take(data).catch((error) => postMessage({failed: error.message}));

async function take(data) {
  if (data.module) {
    ({module, functions} = data);
    byName = new Map(functions.map((fn) => [fn.name, fn]));
    engine = Engine.load(module, functions);
  } else if (data.picture) {
    start = data.picture;
    known = [];
  } else {
    newest = data.run;
    await runPipeline(data);
  }
}

// Lets messages that have arrived be handled.
const pause = () => new Promise((resolve) => {
  const {port1, port2} = new MessageChannel();
  port1.onmessage = resolve;
  port2.postMessage(0);
});

async function runPipeline({run, state, have}) {
  const pictures = [start];
  for (const [step, wanted] of state.steps.entries()) {
    await pause();
    if (run !== newest) return;
    const key = JSON.stringify(wanted);
    if (known[step]?.key !== key) {
      known.length = step;
      postMessage({run, step, began: true});
      known[step] = {key, made: run, outcome: await runStep(state, step, pictures)};
    }
    const {made, outcome} = known[step];
    postMessage(have[step] === made ? {run, step, made} : {run, step, made, ...outcome});
    if (outcome.complaints) break;
    pictures.push(outcome.picture);
  }
  postMessage({run, done: true});
}

async function runStep(state, step, pictures) {
  const picture = pictures[step];
  const {call, parameters, off} = state.steps[step];
  if (off) return {picture, results: [], milliseconds: 0};
  const found = complaints(state, functions, pictures).filter((complaint) => complaint.step === step);
  if (found.length) return {complaints: found};
  try {
    const complete = {...initialValues(byName.get(call), picture), ...parameters};
    return (await engine).run({call, parameters: complete}, picture, pictures);
  } catch (error) {
    if (error.fatal) engine = Engine.load(module, functions);
    return {complaints: [{parameter: error.parameter, sentence: error.message}]};
  }
}
