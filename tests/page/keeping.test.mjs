// Nothing is lost: bytes that were not meant stay, lists keep their elements, and changes are seen everywhere, taken back
// and done again, and never dropped unasked.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { chooseMessage, openFile, paste, saved, says, settled, withPage, wouldSave } from './browser.mjs';
import { message } from './makeLog.mjs';

const focus = (name, sequence = 41) => message(4112, sequence, `{MEDIA_NAME=${name};FOCUS_VALUE=3.250000;}`);
// The same of one-byte characters.
const latin = (name) => focus('x'.repeat(name.length)).replace(/x+/, name);
const status = (count, texts) => message(4161, 41, `{STATUS=3;LOW_STATUS=0;SEVERITY=0;NUM_OF_MESSAGES=${count};MSGS={${texts}};}`);

// Opens the editor of a path, types when something is to be typed, and sets it; gives the message's bytes.
async function edited(page, bytes, path, typed) {
  await openFile(page, { name: 'message.txt', mimeType: '', buffer: Buffer.from(bytes, 'latin1') });
  await page.press('#tree', '*');
  await page.dblclick(`#tree .row[data-path="${path}"]`);
  await settled(page);
  const control = page.locator('#editorValue');
  const shown = await control.inputValue();
  if (typed !== undefined) await control.fill(typed);
  await page.press('#editorValue', 'Enter');
  await settled(page);
  return { shown, made: await wouldSave(page, '#saveText') };
}

test('a value that is not touched keeps its bytes; what can\u2019t be typed stands in quotes with escapes', async () => {
  const cases = [
    ['Caf\xe9', undefined, '"Caf\\xe9"', 'Caf\xe9'],
    ['Caf\xe9', '"Caf\\xe9 2"', '"Caf\\xe9 2"', 'Caf\xe9 2'],
    ['a\x07b', undefined, '"a\\x07b"', 'a\x07b'],
    ['a\xe2\x80\xaeb', undefined, '"a\\xe2\\x80\\xaeb"', 'a\xe2\x80\xaeb'],
    ['\xee\xbf\xa9', undefined, '"\uefe9"', '\xee\xbf\xa9'], // the character that stands for the byte E9
    ['Gr\xc3\xbcn', undefined, 'Gr\u00fcn', 'Gr\xc3\xbcn'],
  ];
  await withPage(async (page) => {
    for (const [name, typed, shows, becomes] of cases) {
      const { shown, made } = await edited(page, latin(name), 'MEDIA_NAME', typed);
      if (typed === undefined) assert.equal(shown, shows);
      assert.equal(/MEDIA_NAME=([^;]*);/.exec(made)[1], becomes);
      if (typed === undefined) assert.equal(made, latin(name));
    }
    // A number, a name and a boolean that were written in other ways, too.
    const other = message(4112, 41, '{MEDIA_NAME="a";FOCUS_VALUE=+3.5;}');
    assert.equal((await edited(page, other, 'FOCUS_VALUE')).made, other);
    assert.ok(await page.isHidden('#undoEdit'));
  });
});

test('a list is edited by its elements, its count is kept, and a record opens its keys', async () => {
  await withPage(async (page) => {
    await paste(page, status(2, 'one,two,'));
    await page.dblclick('#tree .row[data-path=MSGS]');
    assert.ok(await page.isVisible('#listDialog'));
    const values = () => page.$$eval('#listElements input', (all) => all.map(({ value }) => value));
    assert.deepEqual(await values(), ['one', 'two']);
    await page.click('#listElements li:nth-child(2) [aria-label="Move up"]');
    await page.click('#listAdd');
    await page.keyboard.type('a; b');
    await page.click('#listForm [type=submit]');
    await settled(page);
    assert.equal(await page.textContent('#listError'), '');
    assert.equal(await wouldSave(page, '#saveText'), status(3, 'two,one,a\x02 b,'));

    await page.dblclick('#tree .row[data-path=MSGS]');
    await page.click('#listElements li:nth-child(1) [aria-label="Remove"]');
    await page.click('#listForm [type=submit]');
    await settled(page);
    assert.equal(await wouldSave(page, '#saveText'), status(2, 'one,a\x02 b,'));

    await paste(page, message(4101, 1, '{ARRAY_CASSETTE={{NAME=a;},{NAME=b;},};}'));
    await page.dblclick('#tree .row[data-path="ARRAY_CASSETTE[0]"]');
    assert.equal(await page.getAttribute('#tree .row[aria-selected=true]', 'data-path'), 'ARRAY_CASSETTE[0].NAME');
    await page.dblclick('#tree .row[data-path="ARRAY_CASSETTE"]');
    await page.click('#listElements li:nth-child(1) [aria-label="Move down"]');
    await page.click('#listForm [type=submit]');
    await settled(page);
    assert.match(await wouldSave(page, '#saveText'), /\{ARRAY_CASSETTE=\{\{NAME=b;\},\{NAME=a;\},\};\}/);
  });
});

test('a change is seen in list, summary, search and plot, and asked for before it is lost', async () => {
  const damaged = focus('Violet').replace('   62', '   99');
  const log = { name: 'a.log', mimeType: '', buffer: Buffer.from(`08:00:01 ${damaged}\n08:00:02 ${focus('Blue', 42)}\n`) };
  await withPage(async (page) => {
    await openFile(page, log);
    await page.fill('#filterWords', 'violet');
    await says(page, '#listCount', '1 of 2 messages');
    await page.fill('#filterWords', '');
    await page.click('#plotTab');
    await page.fill('#plotKeyName', 'focusValue_t FOCUS_VALUE');
    await page.press('#plotKeyName', 'Enter');
    await page.waitForSelector('#plot .u-over');
    await page.click('#messageTab');
    await says(page, '#summary', '1 with errors · 1 damaged');

    await chooseMessage(page, 0);
    await page.click('#sealMessage');
    await settled(page);
    await says(page, '#announcer', 'Sealed.');
    assert.ok((await page.locator('#announcer').boundingBox()).width > 40, 'what was done is seen');
    await page.click('#tree .row[data-path=FOCUS_VALUE]');
    await page.dblclick('#tree .row[data-path=FOCUS_VALUE]');
    await page.fill('#editorValue', '9');
    await page.press('#editorValue', 'Enter');
    await settled(page);
    assert.doesNotMatch(await page.textContent('#summary'), /damaged|errors/);
    assert.equal(await page.locator('#messages .badge.damaged').count(), 0);
    await page.fill('#filterWords', '9.000000');
    await says(page, '#listCount', '1 of 2 messages');
    await page.fill('#filterWords', '');
    await page.click('#plotTab');
    await page.focus('#plot');
    await page.keyboard.press('Home');
    await says(page, '#plotReading', 'FOCUS_VALUE 9');

    // Another file asks first, and so does leaving the page.
    await page.setInputFiles('#file', { name: 'b.log', mimeType: '', buffer: Buffer.from(focus('Other')) });
    await page.click('#leaveStay');
    await says(page, '#fileName', 'a.log');
    const isAsking = () => page.evaluate(() => !dispatchEvent(new Event('beforeunload', { cancelable: true })));
    assert.ok(await isAsking());
    const mended = `08:00:01 ${focus('Violet').replace('3.25', '9.00')}\n08:00:02 ${focus('Blue', 42)}\n`;
    assert.equal((await saved(page, '#saveLog')).toString(), mended);
    assert.ok(!(await isAsking()), 'what was saved may go');
  });
});
