// What a user's compiler has to accept, and what it has to refuse.
import { DeviceStatus, FocusValue, inspector, JobPort, Media, MediaType, MessageError, messages, parse, parseAs } from 'vekparams2ascii';
import type { Remedy } from 'vekparams2ascii/inspector';

const focus: FocusValue = parseAs(FocusValue, '', { damaged: true });
focus.focusValue += 1;
const media = new Media({ type: MediaType.Plate, wSize: 10, sequence: 3 });
const name: string | null = new JobPort().jobName;
export async function told(log: ReadableStream<Uint8Array>): Promise<string[]> {
  const words = [media.vendor, name ?? '', String(parse(new Uint8Array()))];
  for await (const found of messages(log)) if (found.message instanceof DeviceStatus) words.push(...found.message.msgs);
  return words;
}
export const remedies: Remedy[] = inspector.remedies(focus.toBytes());
export const where = (error: unknown) => (error instanceof MessageError ? [error.start, ...error.problems.map((one) => one.start)] : []);
// @ts-expect-error a text is no real
focus.focusValue = 'high';
// @ts-expect-error no such member
focus.focusValeu = 1;
// @ts-expect-error a count follows its list
new DeviceStatus().numOfMessages = 2;
// @ts-expect-error of another enumeration
media.type = 'sheet_e';
// @ts-expect-error no such member
new FocusValue({ focusValeu: 1 });
