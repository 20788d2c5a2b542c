// The inspection core of the package, and the views that the page makes of it. An instance serves one thread.
import { Inspector } from 'vekparams2ascii/inspector';
import { MessageModel } from './messageModel.ts';
import { pairTexts } from './pairTexts.ts';
import type { Bytes } from './types.ts';
import { viewed } from './viewing.ts';

export class Core extends Inspector {
  /** What MessageModel shows. */
  shown(message: Bytes) {
    return viewed(message, this.view(message));
  }

  /** Two messages' texts, and where they differ. */
  texts(there: Bytes, here: Bytes) {
    const [one, other] = [there, here].map((message) => new MessageModel(message, this.shown(message)));
    return pairTexts(one, other);
  }
}
