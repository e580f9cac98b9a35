// Asks VrntJson.dll, which is beside this program or in PATH, and prints the answer:
//
//     Host "{\"command\": \"query policy\", \"controller\": \"eFirewall\"}"
//
// The process must be a 64-bit one. Exit status: 0 for a result code of success, 1 for a failure, 2 for a wrong call.

using System;
using System.Runtime.InteropServices;
using System.Text;

static class Varnhelt
{
    [DllImport("VrntJson.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern uint VrntJson_Call(byte[] request, out IntPtr answer);

    [DllImport("VrntJson.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern void VrntJson_Free(IntPtr answer);

    /// <summary>Carries out a request. Any thread may call.</summary>
    /// <returns>The result code, whose top bit marks failure.</returns>
    public static uint Call(string request, out string answer)
    {
        IntPtr text;
        uint result = VrntJson_Call(Encoding.UTF8.GetBytes(request + "\0"), out text);
        answer = Marshal.PtrToStringAnsi(text); // it is ASCII
        VrntJson_Free(text);
        return result;
    }
}

static class Host
{
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: Host REQUEST");
            return 2;
        }
        string answer;
        uint result = Varnhelt.Call(arguments[0], out answer);
        Console.WriteLine(answer);
        return (int)(result >> 31);
    }
}
