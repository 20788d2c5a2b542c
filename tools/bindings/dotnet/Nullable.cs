// What compilers of C# 8 and later write down of references that may be null, and read in other assemblies: by hand, since
// Mono's compiler knows neither `string?` nor these. [NullableContext(1)] says of a class that null is nowhere meant but where
// [Nullable(2)] stands; the flags of a List<string> are its own and those of its elements.
namespace System.Runtime.CompilerServices
{
    [AttributeUsage(AttributeTargets.All)]
    internal sealed class NullableAttribute : Attribute
    {
        public readonly byte[] NullableFlags;

        public NullableAttribute(params byte[] flags)
        {
            NullableFlags = flags;
        }

        public NullableAttribute(byte flag)
        {
            NullableFlags = new[] { flag };
        }
    }

    [AttributeUsage(AttributeTargets.Class)]
    internal sealed class NullableContextAttribute : Attribute
    {
        public readonly byte Flag;

        public NullableContextAttribute(byte flag)
        {
            Flag = flag;
        }
    }
}
