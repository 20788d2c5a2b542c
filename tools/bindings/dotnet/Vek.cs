// Reading and checking messages, the messages of a log, and the library beside this assembly.
using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Runtime.CompilerServices;
using System.Runtime.InteropServices;
using System.Text;

namespace VekParams
{
    /// <summary>What is wrong with a message, what a host makes of it, and what puts it right.</summary>
    [NullableContext(1)]
    public sealed class Problem
    {
        internal Problem(Dictionary<string, object> found)
        {
            Severity = (string)found["severity"];
            Code = (string)found["code"];
            Path = (string)found["path"];
            Start = (int)(long)found["start"];
            End = (int)(long)found["end"];
            Words = (string)found["message"];
            Consequence = (string)found["consequence"];
            Remedy = (string)found["suggestion"];
        }

        /// <summary>error or warning</summary>
        public string Severity { get; }

        /// <summary>Stable, for programs: unknown-key</summary>
        public string Code { get; }

        /// <summary>Of the key; empty for the envelope.</summary>
        public string Path { get; }

        /// <summary>The first byte in the message.</summary>
        public int Start { get; }

        /// <summary>Behind the last byte.</summary>
        public int End { get; }

        public string Words { get; }

        /// <summary>What a host makes of it; may be empty.</summary>
        public string Consequence { get; }

        /// <summary>What should stand at that place, when that is known.</summary>
        public string Remedy { get; }

        public override string ToString()
        {
            return (Words.Contains(Path) ? Words : Path + ": " + Words) + (Consequence == "" ? "" : "; " + Consequence) +
                   (Remedy == "" ? "" : "; did you mean " + Remedy + "?");
        }
    }

    /// <summary>A text that is no sound message, or values that no message can carry.</summary>
    [NullableContext(1)]
    public sealed class MessageException : FormatException
    {
        internal MessageException(string words, string path) : base(words)
        {
            Path = path;
            Problems = new Problem[0];
        }

        internal MessageException(string words, IReadOnlyList<Problem> problems) : base(words)
        {
            Problems = problems;
            Path = problems.Count > 0 ? problems[0].Path : "";
        }

        public string Path { get; }

        /// <summary>The first byte in the message that is wrong; null for values that can't be written.</summary>
        public int? Start => Problems.Count > 0 ? Problems[0].Start : (int?)null;

        /// <summary>Behind the last byte.</summary>
        public int? End => Problems.Count > 0 ? Problems[0].End : (int?)null;

        /// <summary>What should stand there, when that is known.</summary>
        public string Remedy => Problems.Count > 0 ? Problems[0].Remedy : "";

        /// <summary>With their places; empty for values that can't be written.</summary>
        public IReadOnlyList<Problem> Problems { get; }
    }

    /// <summary>A message in a log, where it stood and what is wrong with it.</summary>
    [NullableContext(1)]
    public sealed class LogMessage
    {
        private readonly Dictionary<string, object> found;
        private Message message;

        internal LogMessage(Dictionary<string, object> found)
        {
            this.found = found;
            Problems = Vek.ProblemsOf(found);
        }

        /// <summary>The message as it stands.</summary>
        public byte[] Source => Library.BytesSaid((string)found["source"]);

        /// <summary>From 1.</summary>
        public long Line => (long)found["line"];

        /// <summary>Of its first byte.</summary>
        public long Offset => (long)found["offset"];

        /// <summary>What stands in front of it on its line.</summary>
        public string Before => found.ContainsKey("before") ? (string)found["before"] : "";

        /// <summary>0 when it can't be read.</summary>
        public int Id => found.ContainsKey("id") ? (int)(long)found["id"] : 0;

        public IReadOnlyList<Problem> Problems { get; }

        /// <summary>On its line, when there is a date; of the kind Utc when the log says its zone.</summary>
        public DateTime? Time
        {
            get
            {
                string text = TimeText;
                return text.Contains("T")
                    ? DateTime.Parse(text, CultureInfo.InvariantCulture, DateTimeStyles.RoundtripKind)
                    : (DateTime?)null;
            }
        }

        /// <summary>The time on its line in words: 2026-03-01T12:00:00.250, or of a day alone; may be empty.</summary>
        public string TimeText => found.ContainsKey("time") ? (string)found["time"] : "";

        /// <summary>Its values as a host reads them, whatever the problems.</summary>
        public Message Message => message ?? (message = Vek.Made(found, Problems));

        public override string ToString()
        {
            return $"message {Id} in line {Line}, {Problems.Count} problems";
        }
    }

    /// <summary>Messages of laser exposure devices: read, checked, and found in logs.</summary>
    [NullableContext(1)]
    public static partial class Vek
    {
        private static readonly Dictionary<int, Func<Message>> Makers = new Dictionary<int, Func<Message>>();

        static Vek()
        {
            AddMessages(Makers);
        }

        static partial void AddMessages(Dictionary<int, Func<Message>> add);

        /// <summary>The ids of the messages that have classes.</summary>
        public static IEnumerable<int> Ids => Makers.Keys;

        /// <summary>A new message with its defaults.</summary>
        public static Message New(int id)
        {
            Func<Message> make;
            if (!Makers.TryGetValue(id, out make))
                throw new ArgumentOutOfRangeException(nameof(id), id, "there is no class for messages of this id");
            return make();
        }

        /// <summary>The message that a text is. A MessageException when something is wrong with it; with `damaged`, the
        /// values are those that a host reads, and what is wrong is in the message's problems.</summary>
        public static Message Parse(string text, bool damaged = false)
        {
            return Parse(Library.BytesSaid(text), damaged);
        }

        public static Message Parse(byte[] text, bool damaged = false)
        {
            Dictionary<string, object> found = Library.Read(text);
            IReadOnlyList<Problem> problems = ProblemsOf(found);
            Problem[] errors = problems.Where(one => one.Severity == "error").ToArray();
            if (errors.Length > 0 && !damaged)
                throw new MessageException(errors[0] + (errors.Length == 1 ? "" : $" (and {errors.Length - 1} more)"), errors);
            return Made(found, problems);
        }

        /// <summary>The same of one kind; an InvalidCastException when it is of another.</summary>
        public static T Parse<T>(string text, bool damaged = false) where T : Message
        {
            return As<T>(Parse(text, damaged));
        }

        public static T Parse<T>(byte[] text, bool damaged = false) where T : Message
        {
            return As<T>(Parse(text, damaged));
        }

        private static T As<T>(Message message) where T : Message
        {
            return message as T ?? throw new InvalidCastException(
                $"the message of id {message.MessageId} is a {message.GetType().Name}, not a {typeof(T).Name}");
        }

        /// <summary>What is wrong with a text, in order of the places.</summary>
        public static IReadOnlyList<Problem> Check(string text)
        {
            return Check(Library.BytesSaid(text));
        }

        public static IReadOnlyList<Problem> Check(byte[] text)
        {
            return ProblemsOf(Library.Read(text));
        }

        /// <summary>The messages of a log, each as soon as it is whole, the damaged ones too.</summary>
        public static IEnumerable<LogMessage> Messages(Stream log)
        {
            return In(log ?? throw new ArgumentNullException(nameof(log)));
        }

        private static IEnumerable<LogMessage> In(Stream log)
        {
            var block = new byte[1 << 16];
            using (var scanner = new Scanner())
            {
                int size;
                do
                {
                    size = log.Read(block, 0, block.Length);
                    foreach (string line in scanner.Take(block, size))
                        yield return new LogMessage(Json.Read(line));
                } while (size > 0);
            }
        }

        /// <summary>The same of a file.</summary>
        public static IEnumerable<LogMessage> Messages(string path)
        {
            return In(path ?? throw new ArgumentNullException(nameof(path)));
        }

        private static IEnumerable<LogMessage> In(string path)
        {
            using (FileStream log = File.OpenRead(path))
                foreach (LogMessage found in In(log))
                    yield return found;
        }

        internal static IReadOnlyList<Problem> ProblemsOf(Dictionary<string, object> found)
        {
            object problems;
            return found.TryGetValue("problems", out problems)
                ? ((List<object>)problems).Select(one => new Problem((Dictionary<string, object>)one)).ToArray()
                : new Problem[0];
        }

        internal static Message Made(Dictionary<string, object> found, IReadOnlyList<Problem> problems)
        {
            int id = found.ContainsKey("id") ? (int)(long)found["id"] : 0;
            if (!Makers.ContainsKey(id))
                throw new MessageException($"there is no class for messages of id {id}", problems);
            Message message = Makers[id]();
            message.Read(new Fields((Dictionary<string, object>)found[message.RecordName]));
            message.Echo = (int)(long)found["echo"];
            message.Sequence = (int)(long)found["seq"];
            message.Problems = problems;
            return message;
        }
    }

    internal sealed class Scanner : IDisposable
    {
        private IntPtr log = Library.Found(Library.vekBindingsOpenLog);

        internal IEnumerable<string> Take(byte[] block, int size)
        {
            int found = Library.vekBindingsTakeLog(log, block, (UIntPtr)size);
            if (log == IntPtr.Zero || found < 0)
                throw new OutOfMemoryException();
            var bytes = new byte[found];
            Marshal.Copy(Library.vekBindingsFound(log), bytes, 0, found);
            return Encoding.UTF8.GetString(bytes).Split(new[] { '\n' }, StringSplitOptions.RemoveEmptyEntries);
        }

        public void Dispose()
        {
            Library.vekBindingsCloseLog(log);
            log = IntPtr.Zero;
        }
    }

    internal static class Library
    {
        private const string Name = "vekBindings";

        [ThreadStatic] private static byte[] room;

        private delegate int Call(byte[] text, UIntPtr size, byte[] buffer, UIntPtr room);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        private static extern int vekBindingsRead(byte[] text, UIntPtr size, byte[] buffer, UIntPtr room);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        private static extern int vekBindingsWrite(byte[] json, UIntPtr size, byte[] buffer, UIntPtr room);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        internal static extern IntPtr vekBindingsOpenLog();

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        internal static extern int vekBindingsTakeLog(IntPtr log, byte[] block, UIntPtr size);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        internal static extern IntPtr vekBindingsFound(IntPtr log);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        internal static extern void vekBindingsCloseLog(IntPtr log);

        /// <summary>What a call gives, or what is to be done when there is nothing to be called.</summary>
        internal static T Found<T>(Func<T> call)
        {
            try
            {
                return call();
            }
            catch (DllNotFoundException error)
            {
                throw new DllNotFoundException(
                    "the library vekBindings is not there: put the one for this machine beside the program, out of the folder " +
                    "runtimes of the package", error);
            }
        }

        private static int Make(Call call, byte[] text)
        {
            if (text == null)
                throw new ArgumentNullException(nameof(text));
            room = room ?? new byte[1 << 16];
            int size = Found(() => call(text, (UIntPtr)text.Length, room, (UIntPtr)room.Length));
            if (size < room.Length)
                return size;
            room = new byte[size + 1];
            return call(text, (UIntPtr)text.Length, room, (UIntPtr)room.Length);
        }

        internal static Dictionary<string, object> Read(byte[] text)
        {
            int size = Make(vekBindingsRead, text);
            if (size < 0)
                throw new OutOfMemoryException();
            return Json.Read(Encoding.UTF8.GetString(room, 0, size));
        }

        internal static byte[] Write(string json)
        {
            int size = Make(vekBindingsWrite, Encoding.UTF8.GetBytes(json));
            if (size >= 0)
                return room.Take(size).ToArray();
            string words = Encoding.UTF8.GetString(room, 0, Array.IndexOf(room, (byte)0));
            int colon = words.IndexOf(": ", StringComparison.Ordinal);
            throw new MessageException(words, colon < 0 ? "" : words.Substring(0, colon));
        }

        private static readonly Encoding Strict = new UTF8Encoding(false, true);

        /// <summary>A text of any bytes; those that are no UTF-8 are the characters U+EF80 to U+EFFF.</summary>
        internal static string TextOf(byte[] bytes)
        {
            try
            {
                string whole = Strict.GetString(bytes);
                if (!whole.Any(IsByte))
                    return whole;
            }
            catch (DecoderFallbackException)
            {
            }
            var text = new StringBuilder();
            for (int i = 0; i < bytes.Length;)
                i += Append(text, bytes, i);
            return text.ToString();
        }

        private static bool IsByte(char c)
        {
            return c >= '\uEF80' && c <= '\uEFFF';
        }

        private static int Append(StringBuilder text, byte[] bytes, int at)
        {
            int size = bytes[at] < 0x80 ? 1 : bytes[at] < 0xE0 ? 2 : bytes[at] < 0xF0 ? 3 : 4;
            try
            {
                string one = Strict.GetString(bytes, at, size);
                if (!IsByte(one[0]))
                {
                    text.Append(one);
                    return size;
                }
            }
            catch (ArgumentException) // the sequence is unsound, or cut off
            {
            }
            text.Append((char)(0xEF00 | bytes[at]));
            return 1;
        }

        internal static byte[] BytesSaid(string text)
        {
            if (text == null)
                throw new ArgumentNullException(nameof(text));
            if (!text.Any(IsByte))
                return Encoding.UTF8.GetBytes(text);
            var bytes = new List<byte>();
            for (int i = 0, size; i < text.Length; i += size)
            {
                size = char.IsHighSurrogate(text[i]) && i + 1 < text.Length ? 2 : 1;
                if (IsByte(text[i]))
                    bytes.Add((byte)text[i]);
                else
                    bytes.AddRange(Encoding.UTF8.GetBytes(text.Substring(i, size)));
            }
            return bytes.ToArray();
        }
    }
}
