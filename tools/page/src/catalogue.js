// The catalogue: what the page knows of each id without a message of it.

const numeric = new Set(['long integer', 'short integer', 'double', 'float', 'pixels', 'boolean', 'enumeration']);

/** Whether values of a kind can be plotted. */
export const isNumeric = (kind) => numeric.has(kind);

export class Catalogue {
  #messages = new Map(); // with their records
  #names = new Map(); // of enumerations

  constructor({ messages, enumerations, records }) {
    const recordNamed = new Map(records.map((record) => [record.name, record]));
    for (const message of messages) this.#messages.set(message.id, { ...recordNamed.get(message.record), ...message });
    for (const { name, values } of enumerations) this.#names.set(name, values.map((value) => value.name));
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
        if (isNumeric(field.kind))
          found.push({ path: prefix + field.key, field: { ...field, names: this.#names.get(field.enumeration) } });
        else if (field.of) visit(field.of.keys, `${prefix}${field.key}.`);
      }
    };
    visit(this.#messages.get(id)?.keys, '');
    return found;
  }
}
