// The JSON of the library, read into dictionaries, lists, texts, numbers and booleans. It is always well-formed.
using System;
using System.Collections.Generic;
using System.Globalization;
using System.Numerics;
using System.Text;

namespace VekParams
{
    internal sealed class Json
    {
        private readonly string text;
        private int at;

        private Json(string text)
        {
            this.text = text;
        }

        internal static Dictionary<string, object> Read(string text)
        {
            return (Dictionary<string, object>)new Json(text).Value();
        }

        private object Value()
        {
            switch (text[at])
            {
                case '{': return Object();
                case '[': return Array();
                case '"': return String();
                case 't': at += 4; return true;
                case 'f': at += 5; return false;
                case 'n': at += 4; return null;
                default: return Number();
            }
        }

        private Dictionary<string, object> Object()
        {
            var members = new Dictionary<string, object>();
            for (++at; text[at] != '}';)
            {
                at += text[at] == ',' ? 1 : 0;
                string name = String();
                ++at; // the colon
                members[name] = Value();
            }
            ++at;
            return members;
        }

        private List<object> Array()
        {
            var values = new List<object>();
            for (++at; text[at] != ']';)
            {
                at += text[at] == ',' ? 1 : 0;
                values.Add(Value());
            }
            ++at;
            return values;
        }

        private string String()
        {
            int start = ++at;
            while (text[at] != '"' && text[at] != '\\')
                ++at;
            if (text[at] == '"')
                return text.Substring(start, at++ - start);
            var all = new StringBuilder(text, start, at - start, 2 * (at - start) + 16);
            for (; text[at] != '"'; ++at)
                all.Append(text[at] == '\\' ? Escape() : text[at]);
            ++at;
            return all.ToString();
        }

        // Leaves `at` on its last character.
        private char Escape()
        {
            char c = text[++at];
            switch (c)
            {
                case 'b': return '\b';
                case 'f': return '\f';
                case 'n': return '\n';
                case 'r': return '\r';
                case 't': return '\t';
                case 'u':
                    at += 4;
                    return (char)int.Parse(text.Substring(at - 3, 4), NumberStyles.HexNumber, CultureInfo.InvariantCulture);
                default: return c;
            }
        }

        // A whole one as long, any other as double.
        private object Number()
        {
            int start = at;
            while (at < text.Length && "-.0123456789".IndexOf(text[at]) >= 0)
                ++at;
            string digits = text.Substring(start, at - start);
            long whole;
            if (long.TryParse(digits, NumberStyles.AllowLeadingSign, CultureInfo.InvariantCulture, out whole))
                return whole;
            return Real(digits);
        }

        /// <summary>The nearest double of digits with a point, which not every runtime finds.</summary>
        internal static double Real(string digits)
        {
            int point = digits.IndexOf('.');
            int decimals = point < 0 ? 0 : digits.Length - point - 1;
            BigInteger number = BigInteger.Parse(digits.Replace(".", "").TrimStart('-'), CultureInfo.InvariantCulture);
            double value = number.IsZero || number <= 1L << 53 && decimals <= 22
                ? (double)(long)number / Math.Pow(10, decimals)
                : Quotient(number, BigInteger.Pow(10, decimals));
            return digits[0] == '-' ? -value : value;
        }

        // Correctly rounded, for quotients that are no subnormal numbers.
        private static double Quotient(BigInteger number, BigInteger by)
        {
            int shift = 0;
            for (; number / by < BigInteger.One << 54; ++shift)
                number <<= 1;
            BigInteger whole = number / by;
            bool isExact = whole * by == number;
            for (; whole >= BigInteger.One << 55; --shift)
            {
                isExact = isExact && whole.IsEven;
                whole >>= 1;
            }
            long bits = (long)whole; // 55 bits: two more than there is room for
            long rest = bits & 3;
            bits >>= 2;
            bits += rest == 3 || rest == 2 && (!isExact || (bits & 1) == 1) ? 1 : 0;
            return bits * Math.Pow(2, 2 - shift);
        }
    }
}
