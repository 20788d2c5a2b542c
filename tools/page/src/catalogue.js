// The catalogue: what the page knows of each id without a message of it.

const numeric = new Set(['long integer', 'short integer', 'double', 'float', 'boolean', 'enumeration']);

export class Catalogue {
  #messages = new Map();

  constructor(messages) {
    for (const message of messages) this.#messages.set(message.id, message);
  }

  find(id) {
    return this.#messages.get(id);
  }

  name(id) {
    const message = this.#messages.get(id);
    if (!message) return id < 0 ? 'without an id' : 'unknown id';
    return message.record ?? 'without a structure';
  }

  /** The paths of a message's single numbers, with the fields that they belong to. */
  numbers(id) {
    const found = [];
    const visit = (keys, prefix) => {
      for (const field of keys ?? []) {
        if (field.list) continue;
        if (numeric.has(field.kind)) found.push({ path: prefix + field.key, field });
        else if (field.of) visit(field.of.keys, `${prefix}${field.key}.`);
      }
    };
    visit(this.#messages.get(id)?.keys, '');
    return found;
  }
}
