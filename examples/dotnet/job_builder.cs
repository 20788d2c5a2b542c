// Builds the messages of a job.
using System;
using VekParams;

internal static class JobBuilder
{
    private static void Main()
    {
        var job = new ExposeJob
        {
            DrumId = 1,
            NumPasses = 4,
            BitmapFilename = "spring_cyan.tif",
            WSize = 1030.0,
            HSize = 800.0,
            MediaParams = new MediaParams { MediaType = MediaType.Plate, CassetteName = "Upper" },
            PunchParams = { ActiveSystems = { 0, 2 } }, // NumSystems counts them
            Sequence = 1,
        };
        Console.WriteLine(job);
        Console.WriteLine(new JobSepList
        {
            JobName = "Spring",
            SepList = new System.Collections.Generic.List<string> { "Cyan", "Black" },
            Sequence = 2,
        });
        try
        {
            string tooLong = string.Concat(System.Linq.Enumerable.Repeat("a name that is much too long ", 20));
            Console.WriteLine(new CylinderJob { DeviceMediaNameId = tooLong });
        }
        catch (MessageException error)
        {
            Console.WriteLine("refused: " + error.Message);
        }
    }
}
