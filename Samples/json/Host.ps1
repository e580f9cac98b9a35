# Asks VrntJson.dll for one controller of the policy. 64-bit PowerShell, 5.1 or later:
#
#     .\Host.ps1 -Folder 'C:\Program Files\Pelto' -Controller eFirewall
#
param(
    [Parameter(Mandatory = $true)] [string] $Folder, # of VrntJson.dll
    [string] $Controller = 'eFirewall'
)
$ErrorActionPreference = 'Stop'

$env:PATH = "$Folder;$env:PATH" # where the system looks for the library
Add-Type -TypeDefinition @'
using System;
using System.Runtime.InteropServices;
using System.Text;

public static class Varnhelt
{
    [DllImport("VrntJson.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern uint VrntJson_Call(byte[] request, out IntPtr answer);

    [DllImport("VrntJson.dll", CallingConvention = CallingConvention.Cdecl)]
    static extern void VrntJson_Free(IntPtr answer);

    public static string Call(string request)
    {
        IntPtr text;
        VrntJson_Call(Encoding.UTF8.GetBytes(request + "\0"), out text);
        string answer = Marshal.PtrToStringAnsi(text); // it is ASCII
        VrntJson_Free(text);
        return answer;
    }
}
'@

# A request is a hash table; its answer an object with "result", "data" and, after a failure, "why".
function Invoke-Varnhelt([hashtable] $Request) {
    $answer = [Varnhelt]::Call((ConvertTo-Json $Request -Depth 20)) | ConvertFrom-Json
    if ($answer.why) {
        throw "$($answer.result): $($answer.why[0])"
    }
    $answer.data
}

Invoke-Varnhelt @{ command = 'query policy'; controller = $Controller }
