// The library as WebAssembly: one module for the classes of the messages and for the inspector.
import type { Bytes } from './bytes.js';

/** Takes a text and room for the result; gives the result's size, or -1 with the reason in its place. */
export type Call = (text: number, size: number, buffer: number, room: number) => number;

/** What the module exports: see tools/bindings/core/vekBindings.h, and tools/page/core/exports.cpp. */
export interface Library {
  memory: WebAssembly.Memory;
  _initialize?: () => void;
  malloc: (size: number) => number;
  free: (at: number) => void;
  vekBindingsRead: Call;
  vekBindingsWrite: Call;
  vekBindingsOpenLog: () => number;
  vekBindingsTakeLog: (log: number, block: number, size: number) => number;
  vekBindingsFound: (log: number) => number;
  vekBindingsCloseLog: (log: number) => void;
  pageInput: (size: number) => number;
  pageResult: () => number;
  pageResultSize: () => number;
  pageLogBegin: () => void;
  [call: `page${string}`]: (...sizes: number[]) => number | void;
}

// What a module without a system asks of one: the time of day; nothing else is of use to it.
function systemCalls(module: WebAssembly.Module, memory: () => WebAssembly.Memory) {
  const known: Record<string, (...parameters: never[]) => number> = {
    clock_time_get: (_clock: number, _precision: bigint, at: number) => {
      new DataView(memory().buffer).setBigUint64(at, BigInt(Date.now()) * 1000000n, true);
      return 0;
    },
    proc_exit: () => {
      throw new Error('the library stopped');
    },
  };
  const imports: WebAssembly.Imports = {};
  for (const { module: from, name } of WebAssembly.Module.imports(module)) (imports[from] ??= {})[name] = known[name] ?? (() => 0);
  return imports;
}

/** An instance of the library, made of the bytes of vekBindings.wasm. It serves one thread. */
export async function loadLibrary(wasm: Bytes): Promise<Library> {
  const module = await WebAssembly.compile(wasm);
  const instance = await WebAssembly.instantiate(
    module,
    systemCalls(module, () => library.memory),
  );
  const library = instance.exports as unknown as Library;
  library._initialize?.();
  return library;
}
