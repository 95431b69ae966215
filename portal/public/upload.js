// Files of a document's form: they can be dropped, are checked before they are sent, and sending shows its progress and can be
// cancelled. Without this script the form works as a plain one.
'use strict';

function element(name, text, attributes = {}) {
  const made = document.createElement(name);
  made.textContent = text;
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  return made;
}

function enhance(form, kept = []) {
  const texts = JSON.parse(form.dataset.texts);
  const input = form.querySelector('input[type=file]');
  const drop = element('p', texts['upload-drop'], {class: 'drop'});
  const list = element('ul', '', {class: 'files'});
  const status = element('p', '', {class: 'problem', role: 'alert'});
  const bar = element('progress', '', {max: '1', value: '0', 'aria-label': texts['upload-progress']});
  const cancel = element('button', texts.cancel, {type: 'button'});
  const buttons = form.querySelectorAll('button');
  let files = [];
  let request = null;  // while the form is being sent

  function problem() {
    const tooLarge = files.find(file => file.size > Number(form.dataset.largest));
    if (tooLarge) return `${texts['upload-large']} ${tooLarge.name}`;
    if (files.length > Number(form.dataset.mostFiles)) return texts['upload-count'];
    const total = files.reduce((sum, file) => sum + file.size, 0);
    const most = Number(form.dataset.largestForm);
    return most > 0 && total > most ? texts['upload-total'] : '';
  }

  function choose(chosen) {
    files = chosen;
    const transfer = new DataTransfer();
    for (const file of files) transfer.items.add(file);
    input.files = transfer.files;
    list.replaceChildren(...files.map(file => {
      const item = element('li', `${file.name} `);
      const remove = element('button', texts['upload-remove'], {type: 'button'});
      remove.setAttribute('aria-label', `${texts['upload-remove']}: ${file.name}`);
      remove.addEventListener('click', () => { choose(files.filter(each => each !== file)); input.focus(); });
      item.append(remove);
      return item;
    }));
    status.textContent = problem();
  }

  // A folder, and a file that was changed or removed since it was chosen.
  async function unreadable() {
    for (const file of files) {
      try {
        await file.slice(0, 1).arrayBuffer();
      } catch {
        return `${texts['upload-unreadable']} ${file.name}`;
      }
    }
    return '';
  }

  function show(page) {
    // The form again, with what is wrong; the browser would lose the files.
    for (const script of page.querySelectorAll('script')) script.remove();  // they run already
    document.title = page.title;
    document.body.replaceChildren(...document.importNode(page.body, true).childNodes);
    const again = document.getElementById('document-form');
    // Those that have become documents are not sent again.
    const left = again?.dataset.left ? JSON.parse(again.dataset.left) : files.keys();
    if (again) enhance(again, [...left].map(number => files[number]));
    window.scrollTo(0, 0);
    document.getElementById('content').focus();
  }

  function setSending(isSending) {
    bar.hidden = cancel.hidden = !isSending;
    bar.value = 0;
    for (const button of [...buttons, ...list.querySelectorAll('button')]) button.disabled = isSending;
  }

  function stop(reason) {
    request = null;
    setSending(false);
    status.textContent = texts[reason];
    form.querySelector('button.chief').focus();
  }

  function send() {
    let isSent = false;
    request = new XMLHttpRequest();
    request.open('POST', form.action);
    request.responseType = 'document';
    request.upload.addEventListener('progress', event => {
      if (event.lengthComputable) bar.value = event.loaded / event.total;
    });
    request.upload.addEventListener('load', () => { isSent = true; });
    request.addEventListener('load', event => {
      const answer = event.target;
      if (answer.status === 200 && answer.responseURL !== form.action) location.assign(answer.responseURL);
      else if (answer.response?.getElementById('content')) show(answer.response);
      else stop(answer.status === 413 ? 'upload-total' : 'upload-again');
    });
    request.addEventListener('error', () => stop(isSent ? 'upload-again' : 'upload-failed'));
    request.addEventListener('abort', () => stop(isSent ? 'upload-again' : 'upload-cancelled'));
    const data = new FormData(form);
    setSending(true);
    cancel.focus();
    request.send(data);
  }

  form.querySelector('#files-help').after(drop, list, bar, cancel, status);
  setSending(false);
  cancel.addEventListener('click', () => request?.abort());
  input.addEventListener('change', () => choose([...input.files]));
  form.addEventListener('dragover', event => {
    event.preventDefault();
    drop.classList.add('over');
  });
  form.addEventListener('dragleave', () => drop.classList.remove('over'));
  form.addEventListener('drop', event => {
    event.preventDefault();
    drop.classList.remove('over');
    choose([...files, ...event.dataTransfer.files]);
  });
  form.addEventListener('submit', async event => {
    if (files.length === 0) return;
    event.preventDefault();
    if (request) return;
    status.textContent = problem() || await unreadable();
    if (status.textContent === '' && !request) send();
  });
  if (kept.length > 0) choose(kept);
  else if (input.files.length > 0) choose([...input.files]);
}

const documentForm = document.getElementById('document-form');
if (documentForm) enhance(documentForm);
