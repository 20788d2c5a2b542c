// Reads a message, changes it, and prints it.
import { FocusValue, parseAs } from 'vekparams2ascii';

const message = parseAs(FocusValue, '@@4112    80 7 41 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!');
message.focusValue += 0.25;
console.log(String(message));
