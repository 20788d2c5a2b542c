// What the classes of messages have in common: reading, writing, comparing.
import { textOf } from './bytes.js';
import { MessageError, write, type Problem } from './core.js';

/** A member as its class describes it. */
export interface Field {
  key: string;
  name: string;
  kind: 'real' | 'whole' | 'text' | 'wide' | 'flag' | 'word' | 'record';
  isList?: boolean;
  /** Of a whole number. */
  bits?: number;
  words?: readonly string[];
  of?: new () => Record;
  /** It follows a list. */
  isCount?: boolean;
  /** The values of a range, without which its type is not written. */
  range?: string;
  isOptional?: boolean;
}

type ValueNames<T> = { [Name in keyof T]: T[Name] extends (...parameters: never[]) => unknown ? never : Name }[keyof T];
/** Some values of a record, by their names. */
export type Values<T> = Partial<Pick<T, ValueNames<T>>>;

type Body = { [key: string]: unknown };

/** A group of values: a message's body, or a record in it. No other members can be added. */
export abstract class Record {
  static readonly fields: readonly Field[] = [];

  get fields(): readonly Field[] {
    return (this.constructor as typeof Record).fields;
  }

  protected assign(values: object): void {
    Object.seal(this);
    for (const name of Object.keys(values)) if (!(name in this)) throw this.missing(name);
    Object.assign(this, values);
  }

  // Another spelling, or letters in another order.
  private missing(name: string): TypeError {
    const letters = (of: string) => [...of.toLowerCase().replaceAll('_', '')].sort().join('');
    const meant = this.fields.find((field) => letters(field.name) === letters(name));
    return new TypeError(`${this.constructor.name} has no member ${name}${meant ? `; did you mean ${meant.name}?` : ''}`);
  }

  /** Whether both are of one kind and have equal values. */
  equals(other: Record | null | undefined): boolean {
    return !!other && other.constructor === this.constructor && JSON.stringify(bodyOf(this)) === JSON.stringify(bodyOf(other));
  }
}

/** A message. String(message) is its text. */
export abstract class Message extends Record {
  static readonly record: string = '';
  /** Of the message that this one answers, or -1. */
  echo = -1;
  sequence = 0;
  /** What was wrong with the text that it was read from. */
  problems: readonly Problem[] = [];

  get messageId(): number {
    return (this.constructor as unknown as { id: number }).id;
  }

  /** Its text in bytes. A TypeError for a value of a wrong kind, a MessageError for what no message carries. */
  toBytes(): Uint8Array {
    const { record } = this.constructor as typeof Message;
    const echo = whole('@echo', this.echo, 32),
      sequence = whole('@seq', this.sequence, 32);
    return write(`{"id":${this.messageId},"echo":${echo},"seq":${sequence},"${record}":${written(this, '')}}`);
  }

  override toString(): string {
    return textOf(this.toBytes());
  }
}

export function filled<T>(count: number, of: new () => T): T[] {
  return Array.from({ length: count }, () => new of());
}

// What is compared: reals that JSON has not are texts.
function bodyOf(record: Record): unknown {
  return record.fields.map(({ name }) => plain((record as unknown as Body)[name]));
}
function plain(value: unknown): unknown {
  if (Array.isArray(value)) return value.map(plain);
  return value instanceof Record ? bodyOf(value) : typeof value === 'number' ? String(value) : value;
}

/** The values of a body; what is absent is 0 or empty, as a host reads it. */
export function readInto<T extends Record>(record: T, body: Body): T {
  const values = record as unknown as Body;
  for (const field of record.fields) if (!field.isCount) values[field.name] = readValue(field, body[field.key]);
  return record;
}

function readValue(field: Field, found: unknown): unknown {
  if (found === undefined) return field.isOptional ? null : field.isList ? [] : readOne(field, found);
  return field.isList ? (found as unknown[]).map((one) => readOne(field, one)) : readOne(field, found);
}

const unbounded: { [word: string]: number } = { inf: Infinity, '-inf': -Infinity };

function readOne(field: Field, found: unknown): unknown {
  switch (field.kind) {
    case 'real': // one that is infinite or has hundreds of digits comes as a text
      return typeof found === 'string' ? (unbounded[found] ?? Number(found)) : (found ?? 0);
    case 'whole':
      return found ?? 0;
    case 'flag':
      return found ?? false;
    case 'word':
      return found ?? field.words?.[0];
    case 'wide': // one that is no sound UTF-16 comes as its codes
      return Array.isArray(found) ? String.fromCharCode(...(found as number[])).replace(/\0.*$/s, '') : (found ?? '');
    case 'record':
      return field.of && readInto(new field.of(), (found ?? {}) as Body);
    default:
      return found ?? '';
  }
}

function written(record: Record, path: string): string {
  const values = record as unknown as Body;
  const members: string[] = [];
  for (const field of record.fields) {
    const value = values[field.name],
      at = path + field.key;
    const isLeftOut = (field.isOptional && value === null) || (field.range && (values[field.range] as unknown[] | null)?.length === 0);
    if (!isLeftOut) members.push(`"${field.key}":${field.isList ? list(field, at, value) : one(field, at, value)}`);
  }
  return `{${members.join(',')}}`;
}

function list(field: Field, at: string, values: unknown): string {
  if (!Array.isArray(values)) throw wrong(at, values, 'array');
  return `[${Array.from(values, (value, i) => one(field, `${at}[${i}]`, value)).join(',')}]`; // holes too
}

/** A value as an error shows it. */
export function shown(value: unknown): string {
  if (typeof value === 'string') return JSON.stringify(value);
  if (typeof value === 'bigint') return `${value}n`;
  return typeof value === 'object' && value !== null ? `${value.constructor?.name ?? 'Object'} {…}` : String(value);
}

function wrong(at: string, value: unknown, expected: string): TypeError {
  return new TypeError(`${at}: ${shown(value)} is no ${expected}`);
}

function one(field: Field, at: string, value: unknown): string {
  switch (field.kind) {
    case 'real':
      if (typeof value !== 'number' || !Number.isFinite(value)) throw wrong(at, value, 'finite number');
      return sixDecimals(value);
    case 'whole':
      return whole(at, value, field.bits ?? 32);
    case 'flag':
      if (typeof value !== 'boolean') throw wrong(at, value, 'boolean');
      return String(value);
    case 'word':
      if (!field.words?.includes(value as string)) throw wrong(at, value, `one of ${field.words?.join(', ')}`);
      return JSON.stringify(value);
    case 'record':
      if (!field.of || !(value instanceof field.of)) throw wrong(at, value, field.of?.name ?? 'record');
      return written(value, at + '.');
    default:
      if (typeof value !== 'string' || /\p{Surrogate}/u.test(value)) throw wrong(at, value, 'text');
      return JSON.stringify(value);
  }
}

function whole(at: string, value: unknown, bits: number): string {
  if (typeof value !== 'number' || !Number.isInteger(value)) throw wrong(at, value, 'whole number');
  if (value < -(2 ** (bits - 1)) || value >= 2 ** (bits - 1)) throw new MessageError(`${at}: ${value} does not fit ${bits} bits`, at);
  return String(value);
}

/** As the library writes a real: exactly rounded, ties to even, of which toFixed() makes the larger one. */
export function sixDecimals(value: number): string {
  const sign = value < 0 || Object.is(value, -0) ? '-' : '';
  const size = Math.abs(value);
  if (size >= 2 ** 53) return `${sign}${BigInt(size)}.000000`;
  const mayBeTie = size < 4e9 ? (size * 2e6) % 2 === 1 : !Number.isInteger(size); // products are exact up to there
  if (!mayBeTie) return sign + size.toFixed(6);
  const bits = new DataView(new ArrayBuffer(8));
  bits.setFloat64(0, size);
  const raw = bits.getBigUint64(0),
    exponent = raw >> 52n;
  const fraction = (raw & ((1n << 52n) - 1n)) | (exponent > 0n ? 1n << 52n : 0n);
  const shift = 1075n - (exponent > 0n ? exponent : 1n);
  const scaled = fraction * 1000000n,
    half = 1n << (shift - 1n);
  const rest = scaled & ((1n << shift) - 1n);
  let rounded = scaled >> shift;
  if (rest > half || (rest === half && (rounded & 1n) === 1n)) rounded += 1n;
  const digits = rounded.toString().padStart(7, '0');
  return `${sign}${digits.slice(0, -6)}.${digits.slice(-6)}`;
}
