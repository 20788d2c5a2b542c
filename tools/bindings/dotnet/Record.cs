// What the classes of messages have in common: reading, writing, comparing.
using System;
using System.Collections.Generic;
using System.Globalization;
using System.Linq;
using System.Numerics;
using System.Runtime.CompilerServices;
using System.Text;

namespace VekParams
{
    /// <summary>A group of values: a message's body, or a record in it. Equal ones have equal values.</summary>
    [NullableContext(1)]
    public abstract class Record
    {
        internal abstract void Read(Fields fields);

        internal abstract void Write(Writer to);

        internal static List<T> Filled<T>(int count) where T : new()
        {
            return Enumerable.Range(0, count).Select(one => new T()).ToList();
        }

        internal string Written(bool isStrict)
        {
            var to = new Writer(isStrict);
            Write(to);
            return to.All;
        }

        public override bool Equals([Nullable(2)] object other)
        {
            return other != null && other.GetType() == GetType() && ((Record)other).Written(false) == Written(false);
        }

        /// <summary>Its values.</summary>
        public override string ToString()
        {
            return Written(false);
        }

        public override int GetHashCode()
        {
            return GetType().GetHashCode();
        }
    }

    /// <summary>A message. ToString() is its text; equal messages have equal values, whatever their header numbers.</summary>
    [NullableContext(1)]
    public abstract class Message : Record
    {
        public abstract int MessageId { get; }

        internal abstract string RecordName { get; }

        /// <summary>Of the message that this one answers, or -1.</summary>
        public int Echo { get; set; } = -1;

        public int Sequence { get; set; }

        /// <summary>What was wrong with the text that it was read from.</summary>
        public IReadOnlyList<Problem> Problems { get; internal set; } = new Problem[0];

        /// <summary>Its text in bytes. A MessageException for what no message carries.</summary>
        public byte[] ToBytes()
        {
            return Library.Write($"{{\"id\":{MessageId},\"echo\":{Echo},\"seq\":{Sequence},\"{RecordName}\":{Written(true)}}}");
        }

        public override string ToString()
        {
            return Library.TextOf(ToBytes());
        }
    }

    /// <summary>The values of a body, by their keys; what is absent is 0 or empty, as a host reads it.</summary>
    internal sealed class Fields
    {
        private readonly Dictionary<string, object> all;

        internal Fields(Dictionary<string, object> all)
        {
            this.all = all;
        }

        private object Find(string key)
        {
            object value;
            return all.TryGetValue(key, out value) ? value : null;
        }

        private List<T> List<T>(string key, Func<object, T> read)
        {
            var values = Find(key) as List<object>;
            return values == null ? new List<T>() : values.Select(read).ToList();
        }

        // One that is infinite or has hundreds of digits comes as a text.
        private static double RealOf(object value)
        {
            string text = value as string;
            if (text == null)
                return value == null ? 0.0 : Convert.ToDouble(value, CultureInfo.InvariantCulture);
            if (text.EndsWith("inf"))
                return text[0] == '-' ? double.NegativeInfinity : double.PositiveInfinity;
            return text.EndsWith("nan") ? double.NaN : Json.Real(text);
        }

        // One that is no sound UTF-16 comes as its codes.
        private static string WideOf(object value)
        {
            var codes = value as List<object>;
            return codes == null
                ? (string)value
                : new string(codes.Select(code => (char)(ushort)(long)code).TakeWhile(code => code != '\0').ToArray());
        }

        internal static int IndexOf(object word, string[] words)
        {
            return Math.Max(Array.IndexOf(words, (string)word), 0);
        }

        internal double Real(string key) => RealOf(Find(key));
        internal int Whole(string key) => (int)(long)(Find(key) ?? 0L);
        internal short Short(string key) => (short)(long)(Find(key) ?? 0L);
        internal string Text(string key) => (string)Find(key) ?? "";
        internal bool Flag(string key) => (bool)(Find(key) ?? false);
        internal T Word<T>(string key, string[] words) => (T)(object)IndexOf(Find(key), words);
        internal List<double> Reals(string key) => List(key, RealOf);
        internal List<int> Wholes(string key) => List(key, one => (int)(long)one);
        internal List<short> Shorts(string key) => List(key, one => (short)(long)one);
        internal List<string> Texts(string key) => List(key, one => (string)one);
        internal int? OptionalWhole(string key) => (int?)(long?)Find(key);
        internal string OptionalWide(string key) => WideOf(Find(key));
        internal List<string> OptionalWides(string key) => Find(key) == null ? null : List(key, WideOf);
        internal T? OptionalWord<T>(string key, string[] words) where T : struct =>
            Find(key) == null ? (T?)null : Word<T>(key, words);

        internal T Record<T>(string key) where T : Record, new()
        {
            return RecordOf<T>(Find(key));
        }

        internal List<T> Records<T>(string key) where T : Record, new()
        {
            return List(key, RecordOf<T>);
        }

        private static T RecordOf<T>(object members) where T : Record, new()
        {
            var record = new T();
            record.Read(new Fields(members as Dictionary<string, object> ?? new Dictionary<string, object>()));
            return record;
        }
    }

    /// <summary>The JSON of a body. What is no value at all is a MessageException with its path.</summary>
    internal sealed class Writer
    {
        private readonly StringBuilder all = new StringBuilder("{");
        private readonly List<string> path = new List<string>();
        private readonly bool isStrict;

        internal Writer(bool isStrict)
        {
            this.isStrict = isStrict;
        }

        internal string All => all + "}";

        private void Name(string key)
        {
            char last = all[all.Length - 1];
            all.Append(last == '{' || last == '[' ? "" : ",").Append('"').Append(key).Append("\":");
        }

        private void List<T>(string key, List<T> values, Action<string, T> write)
        {
            Name(key);
            if (IsNull(key, values, "list"))
                return;
            all.Append('[');
            for (int i = 0; i < values.Count; ++i)
            {
                all.Append(i == 0 ? "" : ",");
                write(key + "[" + i.ToString(CultureInfo.InvariantCulture) + "]", values[i]);
            }
            all.Append(']');
        }

        private MessageException Wrong(string key, string value, string expected)
        {
            string where = string.Join(".", path.Concat(new[] { key }));
            return new MessageException($"{where}: {value} is no {expected}", where);
        }

        // What is compared may be anything.
        private bool IsNull(string key, object value, string expected)
        {
            if (value == null && isStrict)
                throw Wrong(key, "null", expected);
            all.Append(value == null ? "null" : "");
            return value == null;
        }

        private void PutReal(string key, double value)
        {
            if (double.IsNaN(value) || double.IsInfinity(value))
            {
                if (isStrict)
                    throw Wrong(key, value.ToString(CultureInfo.InvariantCulture), "finite number");
                all.Append(value.ToString(CultureInfo.InvariantCulture));
            }
            else
            {
                all.Append(SixDecimals(value));
            }
        }

        // Exactly rounded, ties to even, whatever the runtime makes of long numbers.
        internal static string SixDecimals(double value)
        {
            long bits = BitConverter.DoubleToInt64Bits(value);
            int exponent = (int)(bits >> 52 & 0x7FF);
            BigInteger scaled = (bits & 0xFFFFFFFFFFFFFL) + (exponent > 0 ? 1L << 52 : 0);
            int shift = Math.Max(exponent, 1) - 1075;
            scaled *= 1000000;
            if (shift >= 0)
            {
                scaled <<= shift;
            }
            else
            {
                BigInteger whole = scaled >> -shift, rest = scaled - (whole << -shift), half = BigInteger.One << (-shift - 1);
                scaled = rest > half || rest == half && !whole.IsEven ? whole + 1 : whole;
            }
            string digits = scaled.ToString(CultureInfo.InvariantCulture).PadLeft(7, '0');
            return (bits < 0 ? "-" : "") + digits.Substring(0, digits.Length - 6) + "." + digits.Substring(digits.Length - 6);
        }

        private void PutText(string key, string value)
        {
            if (IsNull(key, value, "text"))
                return;
            all.Append('"');
            for (int i = 0; i < value.Length; ++i)
            {
                char c = value[i];
                bool isPair = char.IsSurrogatePair(value, i < value.Length - 1 ? i : 0) && i < value.Length - 1;
                if (char.IsSurrogate(c) && !isPair && isStrict)
                    throw Wrong(key, "half a character", "text");
                if (isPair)
                    all.Append(c).Append(value[++i]);
                else if (c < ' ' || c == '"' || c == '\\')
                    all.Append("\\u").Append(((int)c).ToString("x4", CultureInfo.InvariantCulture));
                else
                    all.Append(c);
            }
            all.Append('"');
        }

        private void PutRecord(string key, Record value)
        {
            if (IsNull(key, value, "record"))
                return;
            path.Add(key);
            all.Append('{');
            value.Write(this);
            all.Append('}');
            path.RemoveAt(path.Count - 1);
        }

        internal void Real(string key, double value)
        {
            Name(key);
            PutReal(key, value);
        }

        internal void Whole(string key, int value)
        {
            Name(key);
            all.Append(value.ToString(CultureInfo.InvariantCulture));
        }

        internal void Text(string key, string value)
        {
            Name(key);
            PutText(key, value);
        }

        internal void Flag(string key, bool value)
        {
            Name(key);
            all.Append(value ? "true" : "false");
        }

        internal void Word(string key, int value, string[] words)
        {
            string number = value.ToString(CultureInfo.InvariantCulture);
            bool isThere = value >= 0 && value < words.Length;
            if (!isThere && isStrict)
                throw Wrong(key, number, "value of its enumeration");
            Text(key, isThere ? words[value] : number);
        }

        internal void Record(string key, Record value)
        {
            Name(key);
            PutRecord(key, value);
        }

        internal void Reals(string key, List<double> values) => List(key, values, PutReal);
        internal void Wholes(string key, List<int> values) => List(key, values, (name, one) => all.Append(one));
        internal void Wholes(string key, List<short> values) => List(key, values, (name, one) => all.Append(one));
        internal void Texts(string key, List<string> values) => List(key, values, PutText);
        internal void Records<T>(string key, List<T> values) where T : Record => List(key, values, PutRecord);
    }
}
