// The ways in: files, what is dropped on the page, what is pasted, and the example.
import type { NamedBlob } from './types.ts';
import exampleLog from 'page:example';
import { byId } from './elements.ts';

// The files of what was dropped, those in folders too, in order of their names.
async function filesOf(items: DataTransferItem[]) {
  const entries = [...items].map((item) => item.webkitGetAsEntry?.() ?? item.getAsFile()).filter((entry) => entry !== null);
  const files: File[] = [];
  const visit = async (entry: FileSystemEntry | File) => {
    if (entry instanceof File) files.push(entry);
    else if (entry.isFile) files.push(await new Promise<File>((resolve, reject) => (entry as FileSystemFileEntry).file(resolve, reject)));
    else {
      const reader = (entry as FileSystemDirectoryEntry).createReader();
      for (;;) {
        // A folder is read in pieces.
        const some = await new Promise<FileSystemEntry[]>((resolve, reject) => reader.readEntries(resolve, reject));
        if (some.length === 0) break;
        for (const one of some) await visit(one);
      }
    }
  };
  for (const entry of entries) await visit(entry);
  return files.sort((left, right) => (left.webkitRelativePath + left.name).localeCompare(right.webkitRelativePath + right.name));
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
    if (items.length > 0) void filesOf(items).then((files) => files.length > 0 && onFiles(named(files)));
    else if (words) openText(words, 'dropped text');
  });
}
