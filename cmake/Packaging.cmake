# Installation and packages of the SDK.
