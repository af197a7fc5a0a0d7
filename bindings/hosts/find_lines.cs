// Finds the straight edges of a gray photograph: find_lines PICTURE.bmp
using System;
using System.Runtime.InteropServices;

[StructLayout(LayoutKind.Sequential)]
struct Segment { public int x1, y1, x2, y2; public double a, b, c; }

static class FindLines {
  const string Library = "nuvimgsdk_c";
  const CallingConvention C = CallingConvention.Cdecl;
  [DllImport(Library, CallingConvention = C)]
  static extern IntPtr NuvRead8BitBmpFile2Img(string name, out int width, out int height);
  [DllImport(Library, CallingConvention = C)] [return: MarshalAs(UnmanagedType.I1)]
  static extern bool NuvImgChainLines_Initialize(int width, int height, double minStraightness, double maxDeviation,
                                                 int minLength, int grdThreshold, int maxLines);
  [DllImport(Library, CallingConvention = C)]
  static extern int NuvImgChainLines_DoGryImg(IntPtr gray, int width, int height,
                                              [MarshalAs(UnmanagedType.I1)] bool fitLines);
  [DllImport(Library, CallingConvention = C)] static extern IntPtr NuvImgChainLines_GetLines();
  [DllImport(Library, CallingConvention = C)] static extern void nuv_free(IntPtr p);

  static int Main(string[] arguments) {
    int width = 0, height = 0;
    IntPtr gray = arguments.Length == 1 ? NuvRead8BitBmpFile2Img(arguments[0], out width, out height) : IntPtr.Zero;
    if (gray == IntPtr.Zero || !NuvImgChainLines_Initialize(width, height, 0.9, 1.0, 25, 24, 3601)) return 1;
    int n = NuvImgChainLines_DoGryImg(gray, width, height, true);
    IntPtr segments = NuvImgChainLines_GetLines();
    for (int i = 0; i < n; ++i) {
      var s = Marshal.PtrToStructure<Segment>(segments + i * Marshal.SizeOf<Segment>());
      Console.WriteLine($"{s.x1},{s.y1},{s.x2},{s.y2}");
    }
    nuv_free(gray);
    return 0;
  }
}
