// Loads nuvimgsdk.wasm into a web page or into Node.js.
//
//     const sdk = await load(await WebAssembly.compileStreaming(fetch('nuvimgsdk.wasm')));
//     const image = sdk.put(pixels);                                    // a copy in the module's memory
//     const result = sdk.malloc(pixels.length);
//     sdk.call.NuvGryImgSobel(image, width, height, result);
//     const edges = sdk.bytes(result, pixels.length).slice();
//     sdk.free(image);
//     sdk.free(result);
//
// Pointers are numbers; >>> 0 makes one that a function returns positive. Functions that read or write files need a
// system (WASI). Without one, each file fails to open, and the functions give their failure results.

// Errors of WASI: a bad file handle, and a function that the system lacks.
const BAD_HANDLE = 8;
const NOT_SUPPORTED = 52;

// A clock, and no files.
function leastSystem(memory) {
  const known = {
    clock_time_get(clock, precision, result) {
      const milliseconds = clock === 0 ? Date.now() : performance.now();
      new DataView(memory().buffer).setBigUint64(result, BigInt(Math.round(milliseconds * 1e6)), true);
      return 0;
    },
    fd_prestat_get: () => BAD_HANDLE,  // no directory is open
    proc_exit: (code) => {
      throw new Error(`nuvimgsdk.wasm ended with ${code}`);
    },
  };
  return new Proxy(known, {get: (_, name) => known[name] ?? (() => NOT_SUPPORTED)});
}

// Instantiates a compiled module. A page may pass functions of WASI in place of the least system.
export async function load(module, system) {
  let instance;
  const wasi = system ?? leastSystem(() => instance.exports.memory);
  instance = await WebAssembly.instantiate(module, {wasi_snapshot_preview1: wasi});
  const call = instance.exports;
  const {memory, free} = call;
  call._initialize();
  // A view ends when the memory grows, which any call may cause.
  const bytes = (address, length) => new Uint8Array(memory.buffer, address, length);
  return {
    call,
    memory,
    free,
    bytes,
    // The address of memory of the module, or an error if there is no more.
    malloc(length) {
      const address = call.malloc(length) >>> 0;
      if (address === 0) throw new RangeError(`nuvimgsdk.wasm has no memory of ${length} bytes`);
      return address;
    },
    // Copies bytes into the memory of the module and returns their address.
    put(source) {
      const address = this.malloc(source.length);
      bytes(address, source.length).set(source);
      return address;
    },
  };
}
