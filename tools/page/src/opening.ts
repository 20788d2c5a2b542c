// The ways in: files, what is dropped on the page, what is pasted, and the example.
import type { NamedBlob } from './types.ts';
import exampleLog from 'page:example';
import { announce, byId } from './elements.ts';

// What is dropped, as browsers give it: Chromium does not let a page from disk read the entries of a folder, others know
// no handles.
type Dropped = File | FileSystemHandle | FileSystemEntry | null | undefined;

function droppedIn(item: DataTransferItem): Dropped | Promise<Dropped> {
  const { getAsFileSystemHandle } = item as { getAsFileSystemHandle?: () => Promise<FileSystemHandle | null> };
  const entry = item.webkitGetAsEntry?.();
  if (!entry?.isDirectory) return item.getAsFile();
  return getAsFileSystemHandle ? getAsFileSystemHandle.call(item) : entry;
}

async function* childrenOf(folder: FileSystemDirectoryHandle | FileSystemDirectoryEntry): AsyncGenerator<Dropped> {
  if (!('createReader' in folder)) return yield* folder.values();
  const reader = folder.createReader();
  for (;;) {
    // A folder is read in pieces.
    const some = await new Promise<FileSystemEntry[]>((resolve, reject) => reader.readEntries(resolve, reject));
    if (some.length === 0) return undefined;
    yield* some;
  }
}

async function* filesIn(found: Dropped, path = ''): AsyncGenerator<[path: string, file: File]> {
  if (!found) return;
  const here = `${path}/${found.name}`;
  if (found instanceof File) yield [here, found];
  else if ('getFile' in found) yield [here, await (found as FileSystemFileHandle).getFile()];
  else if ('file' in found)
    yield [here, await new Promise<File>((resolve, reject) => (found as FileSystemFileEntry).file(resolve, reject))];
  else for await (const one of childrenOf(found as FileSystemDirectoryHandle)) yield* filesIn(one, here);
}

// The files of what was dropped, those in folders too, in order of their names. All is asked for at once: later it is gone.
async function filesOf(items: DataTransferItem[]) {
  const files: [path: string, file: File][] = [];
  for (const found of items.map(droppedIn)) for await (const one of filesIn(await found)) files.push(one);
  return files.sort(([left], [right]) => left.localeCompare(right)).map(([, file]) => file);
}

const named = (files: Iterable<File>): NamedBlob[] => [...files].map((blob) => ({ blob, name: blob.name }));

export function makeOpening(onFiles: (files: NamedBlob[]) => void) {
  const file = byId('file');
  const dialog = byId('pasteDialog');
  const text = byId('pasteText');

  const openText = (words: string, name: string) => onFiles([{ blob: new Blob([words]), name }]);
  file.addEventListener('change', () => {
    if (file.files?.length) onFiles(named(file.files));
    file.value = '';
  });
  for (const button of document.querySelectorAll('.openFile')) button.addEventListener('click', () => file.click());
  for (const button of document.querySelectorAll('.openPaste'))
    button.addEventListener('click', () => {
      text.value = '';
      dialog.showModal();
      text.focus();
    });
  byId('pasteForm').addEventListener('submit', (event) => {
    event.preventDefault();
    dialog.close();
    openText(text.value, 'pasted text');
  });
  byId('pasteCancel').addEventListener('click', () => dialog.close());
  byId('openExample').addEventListener('click', () => openText(exampleLog, 'example log'));

  document.addEventListener('paste', (event) => {
    if (event.target instanceof Element && event.target.closest('input, textarea, select, #rawText')) return;
    if (!event.clipboardData) return;
    const words = event.clipboardData.getData('text/plain');
    const { files } = event.clipboardData;
    if (files.length > 0) onFiles(named(files));
    else if (words) openText(words, 'pasted text');
  });
  document.addEventListener('dragover', (event) => {
    event.preventDefault();
    document.body.classList.add('isDropping');
  });
  document.addEventListener('dragleave', (event) => {
    if (!event.relatedTarget) document.body.classList.remove('isDropping');
  });
  document.addEventListener('drop', (event) => {
    event.preventDefault();
    document.body.classList.remove('isDropping');
    if (!event.dataTransfer) return;
    const words = event.dataTransfer.getData('text/plain');
    const items = [...event.dataTransfer.items].filter(({ kind }) => kind === 'file');
    const refuse = (error: Error) => announce(`It can't be read: ${error.message} Open its files.`, true);
    if (items.length > 0) void filesOf(items).then((files) => files.length > 0 && onFiles(named(files)), refuse);
    else if (words) openText(words, 'dropped text');
  });
}
