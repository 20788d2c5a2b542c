// The ways in: a file, what is dropped on the page, what is pasted, and the example.
import exampleLog from 'page:example';
import { byId } from './elements.js';

/** onBlob(blob, name) */
export function makeOpening(onBlob) {
  const file = byId('file');
  const dialog = byId('pasteDialog');
  const text = byId('pasteText');

  const openText = (words, name) => onBlob(new Blob([words]), name);
  file.addEventListener('change', () => {
    if (file.files.length > 0) onBlob(file.files[0], file.files[0].name);
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
    if (event.target.closest?.('input, textarea, select')) return;
    const words = event.clipboardData.getData('text/plain');
    const [pasted] = event.clipboardData.files;
    if (pasted) onBlob(pasted, pasted.name);
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
    const [dropped] = event.dataTransfer.files;
    const words = event.dataTransfer.getData('text/plain');
    if (dropped) onBlob(dropped, dropped.name);
    else if (words) openText(words, 'dropped text');
  });
}
