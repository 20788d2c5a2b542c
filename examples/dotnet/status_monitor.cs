// Tells what a device says of itself: status_monitor.exe [LOG], or a log on standard input as it comes.
using System;
using System.Globalization;
using System.IO;
using VekParams;

internal static class StatusMonitor
{
    private static void Main(string[] arguments)
    {
        using (Stream log = arguments.Length > 0 ? File.OpenRead(arguments[0]) : Console.OpenStandardInput())
            foreach (LogMessage found in Vek.Messages(log))
            {
                foreach (Problem problem in found.Problems)
                    Console.WriteLine($"line {found.Line}: {problem.Severity}: {problem}");
                var status = found.Id == DeviceStatus.TypeId ? (DeviceStatus)found.Message : null;
                if (status != null)
                {
                    string time = found.Time?.ToString("yyyy-MM-ddTHH:mm:ss", CultureInfo.InvariantCulture) ?? "-";
                    string words = string.Join(", ", status.Msgs);
                    Console.WriteLine($"{time} status {status.Status}, severity {status.Severity}: {words}");
                }
            }
    }
}
