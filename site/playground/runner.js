// The page's side of the worker. It runs one pipeline at a time: a new request takes the place of the last one, and a
// long call can be stopped.

export class Runner {
  // report is called with the messages of the worker about the newest run, in their order.
  constructor(workerSource, module, functions, report) {
    this.address = URL.createObjectURL(new Blob([workerSource], {type: 'text/javascript'}));
    this.module = module;
    this.functions = functions;
    this.report = report;
    this.run = 0;
    this.begin();
  }

  begin() {
    this.worker = new Worker(this.address);
    this.worker.onmessage = ({data}) => {
      if (data.failed || data.run === this.run) this.report(data);
    };
    this.worker.onerror = (event) => this.report({failed: event.message || 'The worker could not be started.'});
    this.worker.postMessage({module: this.module, functions: this.functions});
    if (this.picture) this.worker.postMessage({picture: this.picture});
  }

  setPicture(picture) {
    this.picture = picture;
    this.worker.postMessage({picture});
  }

  // have[step] is the run that made what the page holds of a step.
  start(state, have) {
    this.worker.postMessage({run: ++this.run, state, have});
  }

  // Ends the call in progress. The next pipeline begins in a new worker.
  stop() {
    this.worker.terminate();
    ++this.run;
    this.begin();
  }
}
