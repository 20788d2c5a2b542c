// Reads a message, changes it, and prints it.
using System;
using VekParams;

internal static class FourLines
{
    private static void Main()
    {
        var message = Vek.Parse<FocusValue>("@@4112    80 7 41 {MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=1024.500000;}!!");
        message.Value += 0.25;
        Console.WriteLine(message);
    }
}
