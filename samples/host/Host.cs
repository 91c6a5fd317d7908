// SPDX-License-Identifier: MIT
// A host in C#: converts a model and applies final settings to its package.
//   Host.exe MODEL.fbx PACKAGE.czp
// Build it for the width of the library. With Mono: mcs Host.cs
using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

/// <summary>One converter; different ones may work in different threads at once.</summary>
sealed class Converter : IDisposable
{
    const string Library = "fbx_to_ts3d";
    const int RepairAsNeeded = 32;
    const CallingConvention Convention = CallingConvention.Cdecl;

    [UnmanagedFunctionPointer(Convention)]
    delegate void LineCallback(IntPtr context, IntPtr line);

    [UnmanagedFunctionPointer(Convention)]
    delegate int ProgressCallback(IntPtr context, double fraction);

    [StructLayout(LayoutKind.Sequential)]
    struct Options
    {
        public uint size;
        public int rotationX, rotationY, actorType, meshOptionMode, repairs, keepsPictures, longestPictureSide, packageLevel;
        public uint reserved;
        public IntPtr boneRenames, meshOptions, exclusions, pictureFolder, context;
        public LineCallback onLine;
        public ProgressCallback onProgress;
        public IntPtr onPackage;
    }

    [StructLayout(LayoutKind.Sequential)]
    struct FinalSettings
    {
        public uint size;
        public float scalePercent;
        public int rotationX, rotationY;
        public IntPtr boneRenames, meshes;
    }

    [DllImport(Library, CallingConvention = Convention)] static extern IntPtr FbxToTs3dCreate();
    [DllImport(Library, CallingConvention = Convention)] static extern int FbxToTs3dDestroy(IntPtr converter);
    [DllImport(Library, CallingConvention = Convention)] static extern int FbxToTs3dSetOptions(IntPtr converter, ref Options options);
    [DllImport(Library, CallingConvention = Convention)] static extern int FbxToTs3dConvert(IntPtr converter, byte[] model, byte[] package);
    [DllImport(Library, CallingConvention = Convention)] static extern int FbxToTs3dFinish(IntPtr converter, byte[] package, ref FinalSettings settings);
    [DllImport(Library, CallingConvention = Convention)] static extern IntPtr FbxToTs3dErrorText(IntPtr converter);

    readonly IntPtr handle = FbxToTs3dCreate();
    // The library keeps pointers to it: it has to live as long as the converter.
    readonly LineCallback onLine;

    public Converter(Action<string> line)
    {
        onLine = (context, text) => line(FromUtf8(text));
        var options = new Options { repairs = RepairAsNeeded, onLine = onLine };
        options.size = (uint)Marshal.SizeOf(options);
        Require(FbxToTs3dSetOptions(handle, ref options));
    }

    public void Convert(string model, string package) => Require(FbxToTs3dConvert(handle, ToUtf8(model), ToUtf8(package)));

    public void Finish(string package, float scalePercent, string boneRenames, string meshes)
    {
        GCHandle renames = Pin(boneRenames), names = Pin(meshes);
        try
        {
            var settings = new FinalSettings
            {
                scalePercent = scalePercent, rotationY = 180,
                boneRenames = renames.AddrOfPinnedObject(), meshes = names.AddrOfPinnedObject()
            };
            settings.size = (uint)Marshal.SizeOf(settings);
            Require(FbxToTs3dFinish(handle, ToUtf8(package), ref settings));
        }
        finally
        {
            renames.Free();
            names.Free();
        }
    }

    public void Dispose() => FbxToTs3dDestroy(handle);

    void Require(int result)
    {
        if (result != 0) throw new IOException(FromUtf8(FbxToTs3dErrorText(handle)) + " (result " + result + ")");
    }

    // Strings would be passed in the system's code page.
    static byte[] ToUtf8(string text) => Encoding.UTF8.GetBytes(text + "\0");

    static GCHandle Pin(string text) => GCHandle.Alloc(ToUtf8(text), GCHandleType.Pinned);

    static string FromUtf8(IntPtr text)
    {
        int size = 0;
        while (Marshal.ReadByte(text, size) != 0) ++size;
        var bytes = new byte[size];
        Marshal.Copy(text, bytes, 0, size);
        return Encoding.UTF8.GetString(bytes);
    }
}

static class Host
{
    static int Main(string[] arguments)
    {
        if (arguments.Length != 2) return 64;
        try
        {
            using (var converter = new Converter(line => { if (line.StartsWith(">")) Console.WriteLine(line); }))
            {
                converter.Convert(arguments[0], arguments[1]);
                converter.Finish(arguments[1], 95, "L_femur=left femur", "hat=~Cap|hat_a=~Cap band");
            }
        }
        catch (IOException error)
        {
            Console.Error.WriteLine("Host: " + error.Message);
            return 1;
        }
        Console.WriteLine("finished with result 0");
        return 0;
    }
}
