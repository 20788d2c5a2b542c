// Tells what a device says of itself: status_monitor.mjs [LOG], or a log on standard input as it comes.
import { createReadStream } from 'node:fs';
import { DeviceStatus, messages } from 'vekparams2ascii';

const log = process.argv[2] ? createReadStream(process.argv[2]) : process.stdin;
for await (const found of messages(log)) {
  for (const problem of found.problems) console.log(`line ${found.line}: ${problem.severity}: ${problem}`);
  if (found.id !== DeviceStatus.id) continue;
  const { status, severity, msgs } = found.message;
  console.log(`${found.time.slice(0, 19) || '-'} status ${status}, severity ${severity}: ${msgs.join(', ')}`);
}
