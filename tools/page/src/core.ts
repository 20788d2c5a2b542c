// The inspection core of the package, and the views that the page makes of it. An instance serves one thread.
import { Inspector } from 'vekparams2ascii/inspector';
import type { Bytes } from './types.ts';
import { viewed } from './viewing.ts';

export class Core extends Inspector {
  /** What MessageModel shows. */
  shown(message: Bytes) {
    return viewed(message, this.view(message));
  }
}
