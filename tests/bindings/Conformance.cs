// The .NET package against what the library says of the same messages: Conformance.exe CONFORMANCE LOG
using System;
using System.Collections;
using System.Collections.Generic;
using System.Diagnostics;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Text;
using VekParams;

internal static class Conformance
{
    private static int failures;

    private static void Expect(bool isTrue, string what)
    {
        if (isTrue)
            return;
        ++failures;
        if (failures < 10)
            Console.Error.WriteLine("FAILED: " + what);
    }

    private static string NameOf(string key)
    {
        return string.Concat(key.Split('_').Select(part =>
            part == "" ? "" : char.ToUpperInvariant(part[0]) + part.Substring(1).ToLowerInvariant()));
    }

    // Whether every value that the library read stands in the object.
    private static bool HasValues(object record, Dictionary<string, object> keys)
    {
        foreach (KeyValuePair<string, object> one in keys)
        {
            Type type = record.GetType();
            PropertyInfo property = NameOf(one.Key) == type.Name
                ? type.GetProperty("Value") ?? type.GetProperty("Values")
                : type.GetProperty(NameOf(one.Key));
            if (property.CanWrite && !Same(property.GetValue(record), one.Value))
                return false;
        }
        return true;
    }

    private static bool Same(object found, object expected)
    {
        var keys = expected as Dictionary<string, object>;
        var values = expected as List<object>;
        if (keys != null)
            return HasValues(found, keys);
        if (values != null)
            return found is string || ((IList)found).Count == values.Count &&
                   values.Zip(((IList)found).Cast<object>(), (one, other) => Same(other, one)).All(same => same);
        if (found is Enum)
            return ((string)expected).Replace("_", "").ToLowerInvariant().Contains(found.ToString().ToLowerInvariant());
        if (found is double)
            return expected is string || (double)found == Convert.ToDouble(expected, CultureInfo.InvariantCulture);
        return Convert.ToString(found) == Convert.ToString(expected);
    }

    private static void TryCase(Dictionary<string, object> one, string line)
    {
        string again = (string)one["again"];
        if ((string)one["group"] == "default")
        {
            Message made = Vek.New((int)(long)one["id"]);
            made.Sequence = 1;
            Expect(made.ToString() == again, line);
            return;
        }
        byte[] source = Bytes((string)one["source"]);
        Message message = Vek.Parse(source, damaged: true);
        object problems;
        var expected = one.TryGetValue("problems", out problems)
            ? ((List<object>)problems).Cast<Dictionary<string, object>>().ToList()
            : new List<Dictionary<string, object>>();
        Expect(message.Problems.Select(found => found.Code + found.Path + found.Start + found.Remedy).SequenceEqual(
            expected.Select(found => (string)found["code"] + found["path"] + found["start"] + found["suggestion"])), line);
        Expect(HasValues(message, (Dictionary<string, object>)one[(string)one["name"]]), "values of " + line);
        Expect(message.MessageId == (int)(long)one["id"] && message.Sequence == (int)(long)one["seq"], line);
        if (expected.Any(found => (string)found["severity"] == "error"))
            Refused(() => Vek.Parse(source), (string)expected.First(found => (string)found["severity"] == "error")["path"]);
        if (again == null)
            return;
        message.Sequence = unchecked(message.Sequence + 1);
        byte[] bytes = message.ToBytes();
        Expect(bytes.SequenceEqual(Bytes(again)), Encoding.UTF8.GetString(bytes) + " is not " + again);
        Expect(Vek.Parse(bytes, damaged: true).Equals(message), again);
        Expect(message.ToString() == again, "text of " + again);
    }

    // The bytes of a text of the library's JSON.
    private static byte[] Bytes(string text)
    {
        return text.SelectMany((c, i) => c >= '\uEF80' && c <= '\uEFFF' ? new[] { (byte)c }
            : char.IsLowSurrogate(c) ? new byte[0]
            : Encoding.UTF8.GetBytes(text.Substring(i, char.IsHighSurrogate(c) ? 2 : 1))).ToArray();
    }

    private static void Thrown<T>(Func<object> work, string words) where T : Exception
    {
        string said = "nothing";
        try
        {
            work();
        }
        catch (T error)
        {
            said = error.Message;
        }
        Expect(said.Contains(words), words + " is not in: " + said);
    }

    private static void Refused(Action action, string path)
    {
        try
        {
            action();
            Expect(false, path + " was not refused");
        }
        catch (MessageException error)
        {
            Expect(error.Path == path, error.Path + " is not " + path);
        }
    }

    private static void TryRefusals()
    {
        Refused(() => new FocusValue { Value = double.NaN }.ToBytes(), "FOCUS_VALUE");
        Refused(() => new FocusValue { MediaName = null }.ToBytes(), "MEDIA_NAME");
        Refused(() => new FocusValue { MediaName = "a\0b" }.ToBytes(), "MEDIA_NAME");
        Refused(() => new FocusValue { MediaName = "\uD800" }.ToBytes(), "MEDIA_NAME");
        Refused(() => new Media { Type = (MediaType)99 }.ToBytes(), "TYPE");
        Refused(() => new CassetteArray { ArrayCassette = { new Cassette(), new Cassette { MediaPosition = null } } }.ToBytes(),
                "ARRAY_CASSETTE[1].MEDIA_POSITION");
        Refused(() => new DeviceStatus { Msgs = Enumerable.Repeat("x", 11).ToList() }.ToBytes(), "MSGS[10]");
        Refused(() => new CylinderJob { DeviceMediaNameId = new string('x', 256) }.ToBytes(), "DEVICE_MEDIA_NAME_ID");
        Refused(() => new DeviceStatus { Msgs = null }.ToBytes(), "MSGS");
        Thrown<ArgumentNullException>(() => Vek.Parse((byte[])null), "text");
        Thrown<ArgumentNullException>(() => Vek.Check((string)null), "text");
        Thrown<ArgumentNullException>(() => Vek.Messages((Stream)null), "log");
        Thrown<ArgumentOutOfRangeException>(() => Vek.New(9999), "no class");
        Thrown<InvalidCastException>(() => Vek.Parse<Media>(new FocusValue().ToBytes()), "4112 is a FocusValue, not a Media");
        Expect(!new DeviceStatus { Msgs = null }.Equals(new DeviceStatus()), "null is no list");
        Expect(new JobPort { JobName = "\U0001F600", JobId = 1 }.ToString() ==
               "@@4194    59 -1 0 {JOB_NAME={-10179,-8704,0,};JOB_ID=1;}!!", "16-bit text");
    }

    // Of each member that is a reference: null is refused, or it is written down that it may be null.
    private static void TryNulls()
    {
        MethodInfo written = typeof(Record).GetMethod("Written", BindingFlags.Instance | BindingFlags.NonPublic);
        foreach (Type type in typeof(Vek).Assembly.GetExportedTypes().Where(one => one.IsClass))
            Expect(Flags(type, "NullableContextAttribute").SequenceEqual(new byte[] { 1 }), type + " says nothing of null");
        foreach (Type type in typeof(Vek).Assembly.GetExportedTypes().Where(one => typeof(Record).IsAssignableFrom(one) && !one.IsAbstract))
            foreach (PropertyInfo one in type.GetProperties().Where(one => one.GetSetMethod() != null && !one.PropertyType.IsValueType))
            {
                object record = Activator.CreateInstance(type);
                one.SetValue(record, null);
                bool isTaken = true;
                try
                {
                    written.Invoke(record, new object[] { true });
                }
                catch (TargetInvocationException)
                {
                    isTaken = false;
                }
                byte[] expected = !isTaken ? new byte[0] : one.PropertyType.IsGenericType ? new byte[] { 2, 1 } : new byte[] { 2 };
                Expect(Flags(one, "NullableAttribute").SequenceEqual(expected), type + "." + one.Name + " set to null");
            }
    }

    private static IEnumerable<byte> Flags(MemberInfo of, string attribute)
    {
        return of.GetCustomAttributesData().Where(one => one.Constructor.DeclaringType.Name == attribute).SelectMany(
            one => one.ConstructorArguments[0].Value as IEnumerable<CustomAttributeTypedArgument> ?? one.ConstructorArguments)
            .Select(one => (byte)one.Value);
    }

    private static void TryLog(string log)
    {
        List<LogMessage> found = Vek.Messages(log).ToList();
        byte[] all = File.ReadAllBytes(log);
        Expect(found.Count > 5 && found.All(one => one.Time != null), "times of the log");
        Expect(found.All(one => all.Skip((int)one.Offset).Take(one.Source.Length).SequenceEqual(one.Source)), "places");
        Expect(found.Count(one => one.Problems.Count > 0) == 1, "one damaged message in the log");
    }

    private static void TellSpeed(List<byte[]> samples)
    {
        List<Message> messages = samples.Select(one => Vek.Parse(one)).ToList();
        Console.WriteLine($"the {samples.Count} samples: Vek.Parse {Speed(samples, one => Vek.Parse(one))} messages a second, " +
                          $"ToBytes {Speed(messages, one => one.ToBytes())} messages a second");
    }

    private static long Speed<T>(List<T> all, Action<T> work)
    {
        Stopwatch watch = Stopwatch.StartNew();
        for (int i = 0; i < 100; ++i)
            all.ForEach(work);
        return 100 * all.Count * 1000L / Math.Max(watch.ElapsedMilliseconds, 1);
    }

    private static int Main(string[] arguments)
    {
        string[] lines = File.ReadAllLines(arguments[0]);
        List<Dictionary<string, object>> cases = lines.Select(Json.Read).ToList();
        for (int i = 0; i < cases.Count; ++i)
            TryCase(cases[i], lines[i].Substring(0, Math.Min(lines[i].Length, 300)));
        TryRefusals();
        TryNulls();
        TryLog(arguments[1]);
        TellSpeed(cases.Where(one => (string)one["group"] == "sample").Select(one => Bytes((string)one["source"])).ToList());
        Console.WriteLine($"{cases.Count} cases, {failures} failures");
        return failures == 0 && cases.Count > 2500 ? 0 : 1;
    }
}
